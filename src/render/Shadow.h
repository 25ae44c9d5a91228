// Soft shadows.
#pragma once

#include "render/ScoreboardLayout.h"

#include <QPainterPath>
#include <QPointF>

class QPainter;

namespace pointloom {

/// A Gaussian of standard deviation blur / 2. Blur and offset are in the painter's units, so that a
/// scoreboard's shadow grows with it.
struct Shadow {
    Rgba color;
    double blur = 0;
    QPointF offset;
};

/// Draws the shadow that `path`, filled with a colour of alpha `fillAlpha`, casts: around the shape and
/// inside of it too, where a translucent fill lets it through. To be called before the shape is filled.
void drawShadow(QPainter& painter, const QPainterPath& path, const Shadow& shadow, double fillAlpha);

}
