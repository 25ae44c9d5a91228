// Decodes single small pictures of a clip.
#pragma once

#include "media/VideoReader.h"

#include <optional>
#include <QImage>
#include <QString>

namespace pointloom {

class ThumbnailDecoder {
public:
    /// Pictures fill a box of `largest` pixels in one direction.
    ThumbnailDecoder(QString path, QSize largest);

    /// The key frame near `time` (seconds), upright and with square pixels. Null when the file is gone or
    /// cannot be decoded there; never throws.
    QImage pictureAt(double time);

private:
    QImage decode(double time);

    QString m_path;
    QSize m_largest;
    std::optional<media::VideoReader> m_reader; // opened when first needed
    bool m_isUnreadable = false;
    std::optional<double> m_latestTime; // of the frame that `m_latest` shows: wishes often share a key frame
    QImage m_latest;
};

}
