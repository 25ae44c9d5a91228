// Where a picture stands in the area that shows it.
#pragma once

#include <QRect>
#include <QSize>

namespace pointloom::playback {

/// The largest rectangle of the picture's shape in the middle of `area`, in whole points so that the
/// picture's edges are sharp. All of `area` when the picture has no size.
QRect fitPicture(QSize picture, QRect area);

}
