// Soft shadows.
#pragma once

#include "render/ScoreboardLayout.h"

#include <QPainterPath>
#include <QPointF>

class QPainter;

namespace pointloom {

/// A Gaussian shadow of standard deviation blur / 2. Blur and offset are in the painter's units, so that a
/// scoreboard's shadow grows with it.
struct Shadow {
    Rgba color;
    double blur = 0;
    QPointF offset;
};

/// Draws the shadow of `path`, which will be filled with a colour of alpha `fillAlpha`: around the shape and
/// inside of it too, where a translucent fill lets it through. Call it before the shape is filled.
void drawShadow(QPainter& painter, const QPainterPath& path, const Shadow& shadow, double fillAlpha);

}
