#include "ui/common/VideoStill.h"

#include "export/UprightImage.h"
#include "media/VideoReader.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <exception>
#include <QPainter>
#include <QPainterPath>

namespace pointloom {

namespace {

constexpr QSize largestStill{1600, 1600}; // pixels

// The frame shown at `time`, upright and with square pixels. Null when it cannot be read.
QImage readStill(const media::Recording& recording, double time) {
    try {
        auto reader = media::VideoReader::open(recording);
        reader.seek(time);
        const auto frame = reader.read();
        if (!frame)
            return {};
        const QSize whole = reader.track().uprightSize();
        const QSize size = whole.scaled(largestStill, Qt::KeepAspectRatio).boundedTo(whole);
        return uprightImage(*frame, reader.track().orientation, size);
    } catch (const std::exception&) {
        return {};
    }
}

}

VideoStill::VideoStill(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void VideoStill::showStill(const media::Recording& recording, double time) {
    clear();
    m_reading.start([recording, time] { return readStill(recording, time); },
                    [this](const QImage& picture) {
                        m_picture = picture;
                        updateGeometry();
                        update();
                    });
}

void VideoStill::clear() {
    m_reading.cancel();
    m_picture = {};
    update();
}

QSize VideoStill::sizeHint() const {
    return {480, 270};
}

void VideoStill::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath outline;
    const QRectF area = pictureArea();
    outline.addRoundedRect(area, Radius::card, Radius::card);
    painter.fillPath(outline, tokens().raised);
    if (m_picture.isNull()) {
        constexpr int iconSize = 48;
        const QPixmap icon =
            Icons::pixmap(QStringLiteral("film"), iconSize, tokens().quietText, devicePixelRatioF());
        painter.drawPixmap(area.center() - QPointF(iconSize, iconSize) / 2, icon);
        return;
    }
    painter.setClipPath(outline);
    const QImage sharp = m_picture.scaled((area.size() * devicePixelRatioF()).toSize(), Qt::IgnoreAspectRatio,
                                          Qt::SmoothTransformation);
    painter.drawImage(area, sharp);
}

QRectF VideoStill::pictureArea() const {
    const QSizeF shape = m_picture.isNull() ? QSizeF(16, 9) : QSizeF(m_picture.size());
    const QSizeF fitted = shape.scaled(size(), Qt::KeepAspectRatio);
    return {QPointF((width() - fitted.width()) / 2, (height() - fitted.height()) / 2), fitted};
}

}
