// Shows a player's picture without a graphics card.
#pragma once

#include <memory>
#include <QImage>
#include <QWidget>

namespace pointloom::playback {

class Player;
class RenderContext;

class SoftwareSurface : public QWidget {
    Q_OBJECT

public:
    /// Throws PlaybackError.
    SoftwareSurface(Player& player, QWidget* parent);
    ~SoftwareSurface() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void takePicture();
    void drawPicture();

    Player& m_player;
    std::unique_ptr<RenderContext> m_context;
    QImage m_picture; // as stored in the file, in device pixels
    int m_turn = 0;   // degrees clockwise that make it upright
    bool m_outdated = true;
};

}
