#include "playback/PictureFit.h"

#include <algorithm>
#include <QSizeF>

namespace pointloom::playback {

QRect fitPicture(QSize picture, QRect area) {
    if (picture.isEmpty() || area.isEmpty())
        return area;
    const QSize fitted = QSizeF(picture).scaled(area.size(), Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
    const QSize size = fitted.boundedTo(area.size());
    return {area.x() + (area.width() - size.width()) / 2, area.y() + (area.height() - size.height()) / 2,
            size.width(), size.height()};
}

}
