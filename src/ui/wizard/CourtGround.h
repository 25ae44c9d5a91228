// The ground that a scoreboard is shown on while there is no video: a court out of focus.
#pragma once

#include "model/MatchConfig.h"

#include <QPixmap>
#include <QSize>

namespace pointloom {

/// `size` in points; the picture has `devicePixelRatio` pixels to a point.
QPixmap courtGround(SportID sport, QSizeF size, double devicePixelRatio);

}
