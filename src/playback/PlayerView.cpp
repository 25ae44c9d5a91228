#include "playback/PlayerView.h"

#include "media/ColorCube.h"
#include "media/MediaError.h"
#include "playback/RenderContext.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <QGuiApplication>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QPainter>
#include <utility>

namespace pointloom::playback {

/// Shows a player's picture by the graphics card.
class OpenGlSurface : public QOpenGLWidget {
public:
    /// `onUnavailable` is called while it is painted, when nothing can be drawn this way after all.
    OpenGlSurface(Player& player, QWidget* parent, std::function<void()> onUnavailable)
        : QOpenGLWidget(parent)
        , m_player(player)
        , m_onUnavailable(std::move(onUnavailable)) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        connect(&player, &Player::aboutToBeDestroyed, this, &OpenGlSurface::release);
        connect(this, &QOpenGLWidget::frameSwapped, this, [this] {
            if (m_context)
                m_context->reportSwap();
        });
    }

    ~OpenGlSurface() override {
        release();
        // The base class is about to destroy it.
        if (context())
            disconnect(context(), nullptr, this, nullptr);
    }

protected:
    // Called again with another context when the widget moves to another window.
    void initializeGL() override {
        connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &OpenGlSurface::release);
        try {
            m_context = RenderContext::openGl(m_player, *context());
        } catch (const PlaybackError&) {
            m_onUnavailable();
            return;
        }
        connect(m_context.get(), &RenderContext::frameReady, this, &OpenGlSurface::handleFrame);
    }

    void paintGL() override {
        if (!m_context)
            return;
        context()->functions()->glDisable(GL_BLEND); // on in Qt 6.8; libmpv expects a new context's state
        m_context->drawOpenGl(static_cast<int>(defaultFramebufferObject()),
                              (QSizeF(size()) * devicePixelRatioF()).toSize());
    }

private:
    void handleFrame() {
        if (isVisible()) {
            update();
            return;
        }
        makeCurrent();
        m_context->skip();
        doneCurrent();
    }

    void release() {
        if (!m_context)
            return;
        makeCurrent();
        m_context.reset();
        doneCurrent();
    }

    Player& m_player;
    std::function<void()> m_onUnavailable;
    std::unique_ptr<RenderContext> m_context;
};

/// Shows a player's picture without a graphics card.
class SoftwareSurface : public QWidget {
public:
    /// Throws PlaybackError.
    SoftwareSurface(Player& player, QWidget* parent)
        : QWidget(parent)
        , m_player(player)
        , m_context(RenderContext::software(player)) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        connect(m_context.get(), &RenderContext::frameReady, this, &SoftwareSurface::handleFrame);
        connect(&player, &Player::sourceLightChanged, this, &SoftwareSurface::handleLight);
        handleLight();
        connect(&player, &Player::aboutToBeDestroyed, this, [this] { m_context.reset(); });
    }

protected:
    void paintEvent(QPaintEvent*) override {
        drawFrame();
        QPainter painter(this);
        if (m_image.isNull()) {
            painter.fillRect(rect(), Qt::black);
            return;
        }
        const QSize turned = m_turn % 180 == 0 ? size() : size().transposed();
        painter.translate(QRectF(rect()).center());
        painter.rotate(m_turn);
        painter.drawImage(QRectF(QPointF(-turned.width() / 2.0, -turned.height() / 2.0), QSizeF(turned)),
                          m_image);
    }

private:
    void handleFrame() {
        // libmpv requests the old frame once more in the middle of every longer seek.
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

    void handleLight() {
        m_toScreen.reset();
        m_light = {};
        if (const auto& light = m_player.sourceLight()) {
            try {
                m_toScreen = media::ColorCube::toScreen(light->transfer, light->primaries, light->peak);
            } catch (const media::MediaError&) {
                // Shown without conversion, too pale.
            }
        }
        m_outdated = true;
        update();
    }

    void drawFrame() {
        if (!m_context)
            return;
        const QSize upright = (QSizeF(size()) * devicePixelRatioF()).toSize();
        const QSize wanted = m_player.storedRotation() % 180 == 0 ? upright : upright.transposed();
        if (wanted.isEmpty() || (!m_outdated && m_image.size() == wanted))
            return;
        if (m_image.size() != wanted)
            m_image = QImage(wanted, QImage::Format_RGB32);
        m_turn = m_player.storedRotation();
        if (!m_toScreen || !drawConverted())
            m_context->drawSoftware(m_image);
        m_outdated = false;
    }

    bool drawConverted() {
        if (m_light.size() != m_image.size())
            m_light = QImage(m_image.size(), QImage::Format_RGBX64);
        if (!m_context->drawSoftware(m_light))
            return false;
        for (int y = 0; y < m_light.height(); ++y)
            m_toScreen->convertRow(reinterpret_cast<const std::uint16_t*>(m_light.constScanLine(y)),
                                   reinterpret_cast<std::uint32_t*>(m_image.scanLine(y)), m_light.width());
        return true;
    }

    Player& m_player;
    std::unique_ptr<RenderContext> m_context;
    QImage m_image;                             // oriented as stored in the file, in device pixels
    QImage m_light;                             // its sixteen-bit levels, before `m_toScreen`
    std::optional<media::ColorCube> m_toScreen; // for light or colours that a screen cannot show
    int m_turn = 0;                             // degrees clockwise that make the image upright
    bool m_outdated = true;
};

namespace {

/// Whether OpenGL is done by a graphics card and not emulated by the processor, which is slower than drawing
/// in software.
bool findGraphicsCard() {
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal"))
        return false;
    QOpenGLContext context;
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface))
        return false;
    const auto* name = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    const QString renderer = QString::fromUtf8(name);
    context.doneCurrent();
    for (const QLatin1String emulator : {QLatin1String("llvmpipe"), QLatin1String("softpipe"),
                                         QLatin1String("swrast"), QLatin1String("Software Rasterizer")}) {
        if (renderer.contains(emulator, Qt::CaseInsensitive))
            return false;
    }
    return !renderer.isEmpty();
}

PlayerView::Rendering decide(PlayerView::Rendering wanted) {
    if (wanted != PlayerView::Rendering::automatic)
        return wanted;
    const QByteArray choice = qgetenv("POINTLOOM_RENDERING");
    if (choice == "software")
        return PlayerView::Rendering::software;
    static const bool hasGraphicsCard = findGraphicsCard();
    if (choice == "opengl" || hasGraphicsCard)
        return PlayerView::Rendering::openGl;
    return PlayerView::Rendering::software;
}

}

QRect fitPicture(QSize picture, QRect area) {
    if (picture.isEmpty() || area.isEmpty())
        return area;
    const QSize fitted = QSizeF(picture).scaled(area.size(), Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
    const QSize size = fitted.boundedTo(area.size());
    return {area.x() + (area.width() - size.width()) / 2, area.y() + (area.height() - size.height()) / 2,
            size.width(), size.height()};
}

PlayerView::PlayerView(Player& player, Rendering rendering, QWidget* parent)
    : QWidget(parent)
    , m_player(&player)
    , m_pictureSize(player.size()) {
    if (decide(rendering) == Rendering::openGl)
        showOpenGl();
    else
        showSoftware();
    connect(&player, &Player::sizeChanged, this, [this](QSize size) {
        m_pictureSize = size;
        placeSurface();
    });
}

PlayerView::~PlayerView() {
    // The surface detaches from the player while this is still a complete view.
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
    m_rendering = Rendering::openGl;
    adoptSurface(new OpenGlSurface(*m_player, this, [this] {
        // Queued: replacing the surface deletes it.
        QMetaObject::invokeMethod(this, &PlayerView::fallBackToSoftware, Qt::QueuedConnection);
    }));
}

void PlayerView::showSoftware() {
    if (!m_player)
        return;
    m_rendering = Rendering::software;
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
