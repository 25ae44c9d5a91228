// Paints the frames of the sample match.
#pragma once

#include "sample/Figure.h"
#include "sample/Match.h"
#include "sample/Scenery.h"

#include <cstdint>
#include <QImage>
#include <random>

namespace pointloom::sample {

class FramePainter {
public:
    /// `match` outlives the painter. `cameraNoise`: a camera held by hand, with a small sensor.
    FramePainter(const Match& match, QSize size, int framesPerSecond, bool cameraNoise);
    FramePainter(const FramePainter&) = delete;
    FramePainter& operator=(const FramePainter&) = delete;

    /// The frame with this number, from 0; they are painted in order.
    const QImage& paint(int number);

private:
    void sway(QPainter& painter, double time) const;
    Figure figure(Side side, double time);
    void paintBall(QPainter& painter, double time) const;
    void addSensorNoise();

    const Match& m_match;
    int m_framesPerSecond;
    bool m_cameraNoise;
    QImage m_frame;
    Camera m_camera;
    int m_margin; // pixels
    Scenery m_scenery;
    double m_nearStride = 0; // radians
    double m_farStride = 0;
    std::mt19937 m_dice{5};
    std::vector<std::int8_t> m_noise;
};

}
