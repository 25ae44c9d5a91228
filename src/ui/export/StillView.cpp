#include "ui/export/StillView.h"

#include "export/ExportManager.h"
#include "l10n/L10nKey.h"
#include "ui/export/ExportWords.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace pointloom {

namespace {

constexpr QSize emptySize(480, 270);
constexpr QSize smallestSize(200, 113);
constexpr int faultIconSize = 28;
constexpr int canvasDarkness = 107; // per cent; darker than the window

}

StillView::StillView(QWidget* parent)
    : QWidget(parent) {
    constexpr int moment = 60; // milliseconds
    m_moment.setSingleShot(true);
    m_moment.setInterval(moment);
    connect(&m_moment, &QTimer::timeout, this, &StillView::startNext);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void StillView::request(const ExportJob& job, double time, Language language) {
    m_busyNote = t(language, L10nKey::generating);
    m_next = Request{job, time, language};
    m_moment.start();
    update();
}

void StillView::startNext() {
    if (m_rendering.isRunning() || !m_next)
        return;
    const auto next = std::exchange(m_next, std::nullopt);
    m_rendering.start([request = *next] { return render(request); },
                      [this](const Outcome& outcome) { take(outcome); });
}

StillView::Outcome StillView::render(const Request& request) {
    try {
        return {ExportManager::renderStill(request.job, request.time), {}};
    } catch (const std::exception& error) {
        return {{}, ExportWords::fault(error, request.job, false, request.language)};
    }
}

void StillView::take(const Outcome& outcome) {
    if (m_next) {
        if (!m_moment.isActive())
            startNext();
        return;
    }
    m_busyNote.clear();
    setFault(outcome.fault);
    if (!outcome.fault.isEmpty()) {
        Q_EMIT failed();
        return;
    }
    m_still = outcome.still;
    m_scaled = {};
    updateGeometry();
    Q_EMIT rendered();
}

void StillView::setFault(const QString& fault) {
    m_fault = fault;
    if (!fault.isEmpty()) {
        m_still = {};
        m_busyNote.clear();
    }
    setAccessibleDescription(fault);
    update();
}

void StillView::setActualSize(bool isActualSize) {
    m_isActualSize = isActualSize;
    updateGeometry();
    update();
}

QSize StillView::sizeHint() const {
    if (m_isActualSize && !m_still.isNull())
        return (QSizeF(m_still.size()) / devicePixelRatioF()).toSize();
    return emptySize;
}

QSize StillView::minimumSizeHint() const {
    return m_isActualSize ? sizeHint() : smallestSize;
}

QRectF StillView::pictureRectangle() const {
    QSizeF size = m_still.isNull() ? QSizeF(emptySize) : QSizeF(m_still.size());
    if (m_isActualSize && !m_still.isNull())
        size /= devicePixelRatioF();
    else
        size.scale(QSizeF(this->size()), Qt::KeepAspectRatio);
    QRectF rectangle(QPointF(0, 0), size);
    rectangle.moveCenter(QRectF(rect()).center());
    return rectangle;
}

const QPixmap& StillView::scaledStill(QSize pixels) {
    if (m_scaled.size() != pixels)
        m_scaled =
            QPixmap::fromImage(m_still.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    return m_scaled;
}

void StillView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF picture = pictureRectangle();
    QPainterPath canvas;
    canvas.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius::card, Radius::card);

    painter.setClipPath(canvas);
    painter.fillPath(canvas, tokens().window.darker(canvasDarkness));
    if (!m_still.isNull()) {
        const QPixmap& scaled = scaledStill((picture.size() * devicePixelRatioF()).toSize());
        painter.drawPixmap(picture, scaled, QRectF(scaled.rect()));
    }
    if (!m_fault.isEmpty())
        drawFault(painter);
    else if (!m_busyNote.isEmpty())
        drawBusyNote(painter, picture);
    painter.setClipping(false);
    painter.setPen(tokens().line);
    painter.drawPath(canvas);
}

void StillView::drawFault(QPainter& painter) const {
    const QRectF space = QRectF(rect()).adjusted(Space::l, Space::s, -Space::l, -Space::s);
    const QFontMetricsF metrics(font());
    const QRectF text = metrics.boundingRect(space, Qt::AlignCenter | Qt::TextWordWrap, m_fault);
    const double height = faultIconSize + Space::s + text.height();
    const double top = space.center().y() - height / 2;
    painter.drawPixmap(
        QPointF(space.center().x() - faultIconSize / 2.0, top),
        Icons::pixmap(QStringLiteral("warning"), faultIconSize, tokens().warning, devicePixelRatioF()));
    painter.setPen(tokens().text);
    painter.drawText(
        QRectF(space.left(), top + faultIconSize + Space::s, space.width(), text.height() + Space::xs),
        Qt::AlignHCenter | Qt::TextWordWrap, m_fault);
}

void StillView::drawBusyNote(QPainter& painter, const QRectF& picture) const {
    QColor veil = tokens().window;
    veil.setAlphaF(0.85F);
    QRectF plate =
        QFontMetricsF(font()).boundingRect(m_busyNote).adjusted(-Space::m, -Space::s, Space::m, Space::s);
    plate.moveCenter(picture.center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(veil);
    painter.drawRoundedRect(plate, plate.height() / 2, plate.height() / 2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(tokens().text);
    painter.drawText(plate, Qt::AlignCenter, m_busyNote);
}

}
