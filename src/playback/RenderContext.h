// Draws a player's frames by libmpv's render interface, with OpenGL or in software.
#pragma once

#include <atomic>
#include <memory>
#include <QImage>
#include <QObject>
#include <QSize>
#include <vector>

class QOpenGLContext;
struct mpv_render_context;
struct mpv_render_param;

namespace pointloom::playback {

class Player;

/// At most one exists for a player at a time. It may be made and destroyed while a file is open.
class RenderContext : public QObject {
    Q_OBJECT

public:
    /// Draws with the processor. Throws PlaybackError.
    static std::unique_ptr<RenderContext> software(Player& player);

    /// Draws with `context`, which must be current here, in every draw and when the result is destroyed.
    /// Throws PlaybackError when it cannot be used.
    static std::unique_ptr<RenderContext> openGl(Player& player, QOpenGLContext& context);

    ~RenderContext() override;

    /// Fills an image of the format RGB32, or RGBX64 for all of the file's levels, with the frame,
    /// stretched, as it is stored: not turned upright, nor converted to the colours of the screen. False
    /// when this libmpv cannot draw in that format.
    bool drawSoftware(QImage& target);

    /// Fills a framebuffer object of `size` device pixels with the frame, stretched and upright.
    void drawOpenGl(int framebuffer, QSize size);

    /// Whether `frameReady` was about the frame that was drawn last.
    bool isRedraw() const;

    /// Takes the next frame without drawing it, so that a hidden view does not delay the player.
    void skip();

    /// Reports that the last drawing is on the screen.
    void reportSwap();

Q_SIGNALS:
    /// There is a new frame to draw.
    void frameReady();

private:
    explicit RenderContext(Player& player);
    void adopt(mpv_render_context* context);
    bool render(std::vector<mpv_render_param> parameters);
    void handleUpdate();
    static void postUpdate(void* self);

    Player& m_player;
    mpv_render_context* m_context = nullptr;
    std::atomic<bool> m_updatePosted = false;
};

}
