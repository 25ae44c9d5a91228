#include "ui/common/VideoStill.h"

#include "media/FrameImage.h"
#include "media/VideoReader.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <exception>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

namespace pointloom {

namespace {

constexpr QSize largestStill{1600, 1600}; // pixels

QImage upright(const QImage& stored, const media::VideoTrackInfo& track, QSize largest) {
    const QSize shown =
        track.uprightSize().scaled(largest, Qt::KeepAspectRatio).boundedTo(track.uprightSize());
    const media::Orientation& orientation = track.orientation;
    const QSize beforeTurn = orientation.swapsSides() ? shown.transposed() : shown;
    return stored.scaled(beforeTurn, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .mirrored(orientation.mirrored, false)
        .transformed(QTransform().rotate(90.0 * orientation.quarterTurns));
}

}

QImage readVideoStill(const QString& path, double time, QSize largest) {
    try {
        auto reader = media::VideoReader::open(path);
        reader.seek(time);
        const auto frame = reader.read();
        if (!frame)
            return {};
        const media::RgbaPicture picture = media::toRgb(*frame);
        const QImage borrowed(picture.pixels.data(), picture.width, picture.height, picture.width * 4,
                              QImage::Format_RGBX8888);
        const QImage stored = borrowed.convertToFormat(QImage::Format_RGB32); // pixels of its own
        return upright(stored, reader.track(), largest);
    } catch (const std::exception&) {
        return {};
    }
}

VideoStill::VideoStill(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void VideoStill::showStill(const QString& path, double time) {
    clear();
    m_reading.start([path, time] { return readVideoStill(path, time, largestStill); },
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
