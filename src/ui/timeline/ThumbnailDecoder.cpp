#include "ui/timeline/ThumbnailDecoder.h"

#include "media/FrameImage.h"

#include <algorithm>
#include <exception>
#include <QTransform>

namespace pointloom {

namespace {

QImage turnedUpright(QImage picture, media::Orientation orientation) {
    if (orientation.mirrored)
        picture = picture.mirrored(true, false);
    return orientation.quarterTurns == 0
               ? picture
               : picture.transformed(QTransform().rotate(90.0 * orientation.quarterTurns));
}

}

ThumbnailDecoder::ThumbnailDecoder(QString path, QSize largest)
    : m_path(std::move(path))
    , m_largest(largest) {}

QImage ThumbnailDecoder::pictureAt(double time) {
    if (m_isUnreadable)
        return {};
    try {
        if (!m_reader)
            m_reader = media::VideoReader::open(m_path);
    } catch (const std::exception&) {
        m_isUnreadable = true;
        return {};
    }
    try {
        return decode(time);
    } catch (const std::exception&) {
        return {}; // damaged here; other places may be whole
    }
}

QImage ThumbnailDecoder::decode(double time) {
    m_reader->seekToKeyFrame(time);
    const auto frame = m_reader->read();
    if (!frame)
        return {};
    if (m_latestTime == frame->time())
        return m_latest;
    m_latest = convert(*frame);
    m_latestTime = frame->time();
    return m_latest;
}

QImage ThumbnailDecoder::convert(const media::VideoFrame& frame) const {
    const media::VideoTrackInfo& track = m_reader->track();
    const QSize upright = track.uprightSize().scaled(m_largest, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    const QSize stored = track.orientation.swapsSides() ? upright.transposed() : upright;
    const media::RgbaPicture small = media::toRgb(frame, stored);
    const QImage picture(small.pixels.data(), small.width, small.height, small.width * 4,
                         QImage::Format_RGBX8888);
    return turnedUpright(picture.convertToFormat(QImage::Format_RGB32), track.orientation);
}

}
