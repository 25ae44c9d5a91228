#include "playback/OpenGlSurface.h"

#include "playback/PlaybackError.h"
#include "playback/Player.h"
#include "playback/RenderContext.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace pointloom::playback {

namespace {

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
    for (const QLatin1String imitation : {QLatin1String("llvmpipe"), QLatin1String("softpipe"),
                                          QLatin1String("swrast"), QLatin1String("Software Rasterizer")}) {
        if (renderer.contains(imitation, Qt::CaseInsensitive))
            return false;
    }
    return !renderer.isEmpty();
}

}

OpenGlSurface::OpenGlSurface(Player& player, QWidget* parent)
    : QOpenGLWidget(parent)
    , m_player(player) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&player, &Player::aboutToBeDestroyed, this, &OpenGlSurface::release);
    connect(this, &QOpenGLWidget::frameSwapped, this, [this] {
        if (m_context)
            m_context->reportSwap();
    });
}

OpenGlSurface::~OpenGlSurface() {
    release();
    // The base class is about to destroy it.
    if (context())
        disconnect(context(), nullptr, this, nullptr);
}

bool OpenGlSurface::hasGraphicsCard() {
    static const bool found = findGraphicsCard();
    return found;
}

// Called again with another context when the widget moves to another window.
void OpenGlSurface::initializeGL() {
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &OpenGlSurface::release);
    try {
        m_context = RenderContext::openGl(m_player, *context());
    } catch (const PlaybackError&) {
        Q_EMIT unavailable();
        return;
    }
    connect(m_context.get(), &RenderContext::pictureReady, this, &OpenGlSurface::takePicture);
}

void OpenGlSurface::paintGL() {
    if (m_context)
        m_context->drawOpenGl(static_cast<int>(defaultFramebufferObject()),
                              (QSizeF(size()) * devicePixelRatioF()).toSize());
}

void OpenGlSurface::takePicture() {
    if (isVisible()) {
        update();
        return;
    }
    makeCurrent();
    m_context->skip();
    doneCurrent();
}

void OpenGlSurface::release() {
    if (!m_context)
        return;
    makeCurrent();
    m_context.reset();
    doneCurrent();
}

}
