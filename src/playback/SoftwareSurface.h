// Shows a player's picture without a graphics card.
#pragma once

#include "media/ColorCube.h"

#include <memory>
#include <optional>
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
    void takeLight();
    void drawPicture();
    bool drawConverted();

    Player& m_player;
    std::unique_ptr<RenderContext> m_context;
    QImage m_picture;                           // as stored in the file, in device pixels
    QImage m_light;                             // its sixteen-bit levels, before `m_toScreen`
    std::optional<media::ColorCube> m_toScreen; // where the file holds more than a screen shows
    int m_turn = 0;                             // degrees clockwise that make it upright
    bool m_outdated = true;
};

}
