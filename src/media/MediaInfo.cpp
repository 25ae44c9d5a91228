#include "media/MediaInfo.h"

#include "media/InputFile.h"
#include "media/OpenedMedia.h"

#include <cmath>

namespace pointloom::media {

QSize VideoTrackInfo::uprightSize() const {
    const QSize square(static_cast<int>(std::lround(storedSize.width() * sampleAspectRatio.value())),
                       storedSize.height());
    return orientation.swapsSides() ? square.transposed() : square;
}

MediaInfo readMediaInfo(const QString& path) {
    InputFile file = InputFile::open(path);
    return openMedia(file, 1).info;
}

}
