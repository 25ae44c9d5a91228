// Everything that stands still: the court, the walls, the umpire, the net; and the crowd in the stands.
#pragma once

#include "sample/Camera.h"

#include <QImage>
#include <vector>

class QPainter;

namespace pointloom::sample {

class Scenery {
public:
    /// Paints the views ahead of time. They are `margin` pixels larger than the picture on every side, so
    /// that the camera can sway.
    Scenery(const Camera& camera, QSize picture, int margin);

    /// The view without net and players; its top left corner lies at (-margin, -margin) of the picture.
    /// `applause` in [0, 1] decides whether the crowd sits or claps.
    const QImage& view(double time, double applause) const;

    void paintNet(QPainter& painter) const;

private:
    const Camera& m_camera;
    std::vector<QImage> m_sitting; // one turn of small movements each
    std::vector<QImage> m_clapping;
};

}
