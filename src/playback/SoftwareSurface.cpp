#include "playback/SoftwareSurface.h"

#include "playback/Player.h"
#include "playback/RenderContext.h"

#include <QPainter>

namespace pointloom::playback {

SoftwareSurface::SoftwareSurface(Player& player, QWidget* parent)
    : QWidget(parent)
    , m_player(player)
    , m_context(RenderContext::software(player)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(m_context.get(), &RenderContext::pictureReady, this, &SoftwareSurface::takePicture);
    connect(&player, &Player::aboutToBeDestroyed, this, [this] { m_context.reset(); });
}

SoftwareSurface::~SoftwareSurface() = default;

void SoftwareSurface::takePicture() {
    m_outdated = true;
    if (isVisible())
        update();
    else
        m_context->skip();
}

void SoftwareSurface::paintEvent(QPaintEvent*) {
    drawPicture();
    QPainter painter(this);
    if (m_picture.isNull()) {
        painter.fillRect(rect(), Qt::black);
        return;
    }
    const QSize turned = m_turn % 180 == 0 ? size() : size().transposed();
    painter.translate(QRectF(rect()).center());
    painter.rotate(m_turn);
    painter.drawImage(QRectF(QPointF(-turned.width() / 2.0, -turned.height() / 2.0), QSizeF(turned)),
                      m_picture);
}

void SoftwareSurface::drawPicture() {
    if (!m_context)
        return;
    const QSize upright = (QSizeF(size()) * devicePixelRatioF()).toSize();
    const QSize wanted = m_player.storedRotation() % 180 == 0 ? upright : upright.transposed();
    if (wanted.isEmpty() || (!m_outdated && m_picture.size() == wanted))
        return;
    if (m_picture.size() != wanted)
        m_picture = QImage(wanted, QImage::Format_RGB32);
    m_turn = m_player.storedRotation();
    m_context->drawSoftware(m_picture);
    m_outdated = false;
}

}
