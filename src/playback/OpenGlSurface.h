// Shows a player's picture by the graphics card.
#pragma once

#include <memory>
#include <QOpenGLWidget>
#include <QString>

namespace pointloom::playback {

class Player;
class RenderContext;

class OpenGlSurface : public QOpenGLWidget {
    Q_OBJECT

public:
    OpenGlSurface(Player& player, QWidget* parent);
    ~OpenGlSurface() override;

    /// Whether OpenGL here is done by a graphics card rather than imitated by the processor, which is
    /// slower than drawing in software outright. Makes a context of its own to find out, once.
    static bool hasGraphicsCard();

Q_SIGNALS:
    /// Nothing can be drawn this way after all.
    void unavailable();

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    void takePicture();
    void release();

    Player& m_player;
    std::unique_ptr<RenderContext> m_context;
};

}
