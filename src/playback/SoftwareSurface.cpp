#include "playback/SoftwareSurface.h"

#include "media/MediaError.h"
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
    connect(&player, &Player::sourceLightChanged, this, &SoftwareSurface::takeLight);
    takeLight();
    connect(&player, &Player::aboutToBeDestroyed, this, [this] { m_context.reset(); });
}

SoftwareSurface::~SoftwareSurface() = default;

void SoftwareSurface::takePicture() {
    // libmpv asks for the old picture once more in the middle of every longer seek.
    if (m_context->isRedraw()) {
        m_context->skip();
        return;
    }
    m_outdated = true;
    if (isVisible())
        update();
    else
        m_context->skip();
}

void SoftwareSurface::takeLight() {
    m_toScreen.reset();
    m_light = {};
    if (const auto& light = m_player.sourceLight()) {
        try {
            m_toScreen = media::ColorCube::toScreen(light->transfer, light->primaries, light->peak);
        } catch (const media::MediaError&) {
            // Pale, but there.
        }
    }
    m_outdated = true;
    update();
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
    if (!m_toScreen || !drawConverted())
        m_context->drawSoftware(m_picture);
    m_outdated = false;
}

bool SoftwareSurface::drawConverted() {
    if (m_light.size() != m_picture.size())
        m_light = QImage(m_picture.size(), QImage::Format_RGBX64);
    if (!m_context->drawSoftware(m_light))
        return false;
    for (int y = 0; y < m_light.height(); ++y)
        m_toScreen->convertRow(reinterpret_cast<const std::uint16_t*>(m_light.constScanLine(y)),
                               reinterpret_cast<std::uint32_t*>(m_picture.scanLine(y)), m_light.width());
    return true;
}

}
