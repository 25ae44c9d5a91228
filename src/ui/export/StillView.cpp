#include "ui/export/StillView.h"

#include "export/ExportManager.h"
#include "export/PictureLayout.h"
#include "l10n/L10nKey.h"
#include "ui/export/ExportWords.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
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
    m_position = job.settings.fill.value_or(m_position);
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
        if (!request.job.settings.fill)
            return {ExportManager::renderStill(request.job, request.time), {}, {}};
        const ExportManager::StillLayers layers = ExportManager::renderStillLayers(request.job, request.time);
        return {layers.picture, layers.overlay, {}};
    } catch (const std::exception& error) {
        return {{}, {}, ExportWords::fault(error, request.job, false, request.language)};
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
    m_still = {outcome.still, {}};
    m_overlay = {outcome.overlay, {}};
    m_drag.reset();
    setFocusPolicy(isMovable() ? Qt::StrongFocus : Qt::NoFocus);
    setCursor(isMovable() ? Qt::OpenHandCursor : Qt::ArrowCursor);
    updateGeometry();
    Q_EMIT rendered();
}

void StillView::setFault(const QString& fault) {
    m_fault = fault;
    if (!fault.isEmpty()) {
        m_still = {};
        m_overlay = {};
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
    if (m_isActualSize && !still().isNull())
        return (QSizeF(still().size()) / devicePixelRatioF()).toSize();
    return emptySize;
}

QSize StillView::minimumSizeHint() const {
    return m_isActualSize ? sizeHint() : smallestSize;
}

// The exported frame.
QRectF StillView::frameRectangle() const {
    const QImage& frame = isMovable() ? m_overlay.image : still();
    QSizeF size = frame.isNull() ? QSizeF(emptySize) : QSizeF(frame.size());
    if (m_isActualSize && !frame.isNull())
        size /= devicePixelRatioF();
    else
        size.scale(QSizeF(this->size()), Qt::KeepAspectRatio);
    QRectF rectangle(QPointF(0, 0), size);
    rectangle.moveCenter(QRectF(rect()).center());
    return rectangle;
}

// The picture, which reaches beyond the frame where it is cropped.
QRectF StillView::pictureRectangle() const {
    const QRectF frame = frameRectangle();
    if (!isMovable())
        return frame;
    const QRectF seen = fillingPart(still().size(), m_overlay.image.size(), m_position);
    const QSizeF size(frame.width() / seen.width(), frame.height() / seen.height());
    return {frame.topLeft() - QPointF(seen.x() * size.width(), seen.y() * size.height()), size};
}

void StillView::moveTo(double position) {
    m_position = std::clamp(position, 0.0, 1.0);
    update();
    Q_EMIT moved(m_position);
}

void StillView::keyPressEvent(QKeyEvent* event) {
    const double step = event->modifiers() & Qt::ShiftModifier ? 0.1 : 0.01;
    const int key = isMovable() ? event->key() : Qt::Key_unknown;
    if (key == Qt::Key_Left || key == Qt::Key_Up)
        moveTo(m_position - step);
    else if (key == Qt::Key_Right || key == Qt::Key_Down)
        moveTo(m_position + step);
    else if (key == Qt::Key_Home || key == Qt::Key_End)
        moveTo(key == Qt::Key_End ? 1 : 0);
    else
        QWidget::keyPressEvent(event);
}

void StillView::mousePressEvent(QMouseEvent* event) {
    if (!isMovable() || event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_drag = Drag{event->position(), m_position};
    setCursor(Qt::ClosedHandCursor);
}

void StillView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_drag)
        return;
    const QSizeF spare = pictureRectangle().size() - frameRectangle().size();
    const QPointF way = event->position() - m_drag->from;
    moveTo(m_drag->position -
           (spare.width() > spare.height() ? way.x() / spare.width() : way.y() / spare.height()));
}

void StillView::mouseReleaseEvent(QMouseEvent*) {
    if (std::exchange(m_drag, std::nullopt))
        setCursor(Qt::OpenHandCursor);
}

const QPixmap& StillView::ScaledImage::at(QSize pixels) {
    if (scaled.size() != pixels)
        scaled = QPixmap::fromImage(image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    return scaled;
}

void StillView::drawStill(QPainter& painter, ScaledImage& still, const QRectF& place) {
    const QPixmap& scaled = still.at((place.size() * devicePixelRatioF()).toSize());
    painter.drawPixmap(place, scaled, QRectF(scaled.rect()));
}

// Over the picture: what is cropped under a veil, the overlay, an edge.
void StillView::drawFrame(QPainter& painter) {
    constexpr float veil = 0.72F;
    const QRectF frame = frameRectangle();
    QPainterPath cropped;
    cropped.addRect(rect());
    cropped.addRect(frame);
    QColor shade = tokens().window.darker(canvasDarkness);
    shade.setAlphaF(veil);
    painter.fillPath(cropped, shade);
    drawStill(painter, m_overlay, frame);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(hasFocus() ? tokens().accent : tokens().quietText, hasFocus() ? 2 : 1));
    painter.drawRect(frame.adjusted(0.5, 0.5, -0.5, -0.5));
}

void StillView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF picture = pictureRectangle();
    QPainterPath canvas;
    canvas.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius::card, Radius::card);

    painter.setClipPath(canvas);
    painter.fillPath(canvas, tokens().window.darker(canvasDarkness));
    if (!still().isNull())
        drawStill(painter, m_still, picture);
    if (isMovable())
        drawFrame(painter);
    if (!m_fault.isEmpty())
        drawFault(painter);
    else if (!m_busyNote.isEmpty())
        drawBusyNote(painter, frameRectangle());
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
