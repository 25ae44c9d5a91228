#include "playback/PlayerView.h"

#include "playback/OpenGlSurface.h"
#include "playback/PictureFit.h"
#include "playback/PlaybackError.h"
#include "playback/SoftwareSurface.h"

#include <QPainter>
#include <utility>

namespace pointloom::playback {

namespace {

PlayerView::Rendering decide(PlayerView::Rendering wanted) {
    if (wanted != PlayerView::Rendering::Automatic)
        return wanted;
    const QByteArray choice = qgetenv("POINTLOOM_RENDERING");
    if (choice == "software")
        return PlayerView::Rendering::Software;
    if (choice == "opengl" || OpenGlSurface::hasGraphicsCard())
        return PlayerView::Rendering::OpenGl;
    return PlayerView::Rendering::Software;
}

}

PlayerView::PlayerView(Player& player, Rendering rendering, QWidget* parent)
    : QWidget(parent)
    , m_player(&player)
    , m_pictureSize(player.size()) {
    if (decide(rendering) == Rendering::OpenGl)
        showOpenGl();
    else
        showSoftware();
    connect(&player, &Player::sizeChanged, this, [this](QSize size) {
        m_pictureSize = size;
        placeSurface();
    });
}

PlayerView::~PlayerView() {
    // The surface lets go of the player while this is still a whole view.
    delete m_surface;
}

QRectF PlayerView::videoRect() const {
    return fitPicture(m_pictureSize, rect());
}

void PlayerView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), palette().window());
}

void PlayerView::resizeEvent(QResizeEvent*) {
    placeSurface();
}

void PlayerView::showOpenGl() {
    m_rendering = Rendering::OpenGl;
    auto* surface = new OpenGlSurface(*m_player, this);
    // Not from inside of the widget that has just found out that it is of no use.
    connect(surface, &OpenGlSurface::unavailable, this, &PlayerView::fallBackToSoftware,
            Qt::QueuedConnection);
    adoptSurface(surface);
}

void PlayerView::showSoftware() {
    if (!m_player)
        return;
    m_rendering = Rendering::Software;
    delete std::exchange(m_surface, nullptr);
    adoptSurface(new SoftwareSurface(*m_player, this));
}

void PlayerView::fallBackToSoftware() {
    try {
        showSoftware();
    } catch (const PlaybackError& error) {
        Q_EMIT unavailable(QString::fromUtf8(error.what()));
    }
}

void PlayerView::adoptSurface(QWidget* surface) {
    m_surface = surface;
    m_surface->lower();
    placeSurface();
    m_surface->show();
}

void PlayerView::placeSurface() {
    const QRect place = fitPicture(m_pictureSize, rect());
    if (!m_surface || m_surface->geometry() == place)
        return;
    m_surface->setGeometry(place);
    Q_EMIT videoRectChanged(place);
}

}
