#include "playback/RenderContext.h"

#include "playback/Player.h"

#include <array>
#include <mpv/client.h>
#include <mpv/render.h>
#include <mpv/render_gl.h>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <string>
#include <vector>

namespace pointloom::playback {

namespace {

void* findFunction(void* context, const char* name) {
    return reinterpret_cast<void*>(static_cast<QOpenGLContext*>(context)->getProcAddress(name));
}

// The parameter lists of libmpv carry everything as a pointer to a variable that is not const.
mpv_render_param parameter(mpv_render_param_type type, void* value) {
    return {type, value};
}

mpv_render_param parameter(mpv_render_param_type type, const char* value) {
    return {type, const_cast<char*>(value)};
}

constexpr mpv_render_param lastParameter{MPV_RENDER_PARAM_INVALID, nullptr};

mpv_render_context* create(mpv_handle* handle, mpv_render_param* parameters) {
    mpv_render_context* context = nullptr;
    const int result = mpv_render_context_create(&context, handle, parameters);
    if (result < 0)
        throw PlaybackError(std::string("The picture cannot be drawn: ") + mpv_error_string(result) + ".");
    return context;
}

// With it hardware-decoded frames reach the screen without a copy; null on other desktops.
void* x11Display() {
#if QT_CONFIG(xcb)
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return x11->display();
#endif
    return nullptr;
}

}

RenderContext::RenderContext(Player& player)
    : m_player(player) {}

std::unique_ptr<RenderContext> RenderContext::software(Player& player) {
    std::unique_ptr<RenderContext> result(new RenderContext(player));
    std::array parameters{parameter(MPV_RENDER_PARAM_API_TYPE, MPV_RENDER_API_TYPE_SW), lastParameter};
    // libmpv's software drawing does not turn frames, crashes when told to, and shows HDR as white.
    player.setRotationHandled(false);
    player.setColorsHandled(false);
    result->adopt(create(player.handle(), parameters.data()));
    return result;
}

std::unique_ptr<RenderContext> RenderContext::openGl(Player& player, QOpenGLContext& context) {
    std::unique_ptr<RenderContext> result(new RenderContext(player));
    mpv_opengl_init_params functions{findFunction, &context};
    void* display = x11Display();
    std::array parameters{parameter(MPV_RENDER_PARAM_API_TYPE, MPV_RENDER_API_TYPE_OPENGL),
                          parameter(MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &functions),
                          display ? parameter(MPV_RENDER_PARAM_X11_DISPLAY, display) : lastParameter,
                          lastParameter};
    player.setRotationHandled(true);
    player.setColorsHandled(true);
    result->adopt(create(player.handle(), parameters.data()));
    return result;
}

RenderContext::~RenderContext() {
    if (!m_context)
        return;
    m_player.detachRenderer();
    mpv_render_context_free(m_context);
}

bool RenderContext::isRedraw() const {
    mpv_render_frame_info next{};
    mpv_render_context_get_info(m_context, parameter(MPV_RENDER_PARAM_NEXT_FRAME_INFO, &next));
    return (next.flags & MPV_RENDER_FRAME_INFO_REDRAW) != 0;
}

bool RenderContext::drawSoftware(QImage& target) {
    std::array size{target.width(), target.height()};
    auto stride = static_cast<std::size_t>(target.bytesPerLine());
    const bool deep = target.format() == QImage::Format_RGBX64;
    return render({parameter(MPV_RENDER_PARAM_SW_SIZE, size.data()),
                   parameter(MPV_RENDER_PARAM_SW_FORMAT, deep ? "rgba64" : "bgr0"),
                   parameter(MPV_RENDER_PARAM_SW_STRIDE, &stride),
                   parameter(MPV_RENDER_PARAM_SW_POINTER, target.bits())});
}

void RenderContext::drawOpenGl(int framebuffer, QSize size) {
    mpv_opengl_fbo target{framebuffer, size.width(), size.height(), 0};
    int flip = 1;
    render({parameter(MPV_RENDER_PARAM_OPENGL_FBO, &target), parameter(MPV_RENDER_PARAM_FLIP_Y, &flip)});
}

void RenderContext::skip() {
    int skipDrawing = 1;
    render({parameter(MPV_RENDER_PARAM_SKIP_RENDERING, &skipDrawing)});
}

bool RenderContext::render(std::vector<mpv_render_param> parameters) {
    int waitForDisplayTime = 0;
    parameters.push_back(parameter(MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waitForDisplayTime));
    parameters.push_back(lastParameter);
    return mpv_render_context_render(m_context, parameters.data()) >= 0;
}

void RenderContext::reportSwap() {
    mpv_render_context_report_swap(m_context);
}

void RenderContext::adopt(mpv_render_context* context) {
    m_context = context;
    mpv_render_context_set_update_callback(m_context, &RenderContext::postUpdate, this);
    m_player.attachRenderer();
}

// On one of libmpv's threads, which must not call back into it.
void RenderContext::postUpdate(void* self) {
    auto* context = static_cast<RenderContext*>(self);
    if (!context->m_updatePosted.exchange(true))
        QMetaObject::invokeMethod(context, &RenderContext::handleUpdate, Qt::QueuedConnection);
}

void RenderContext::handleUpdate() {
    m_updatePosted = false;
    if ((mpv_render_context_update(m_context) & MPV_RENDER_UPDATE_FRAME) != 0)
        Q_EMIT frameReady();
}

}
