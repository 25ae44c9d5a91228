#include "ui/timeline/ThumbnailDecoder.h"

#include "export/UprightImage.h"

#include <exception>

namespace pointloom {

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
    const media::VideoTrackInfo& track = m_reader->track();
    const QSize size = track.uprightSize().scaled(m_largest, Qt::KeepAspectRatio);
    m_latest = uprightImage(*frame, track.orientation, size);
    m_latestTime = frame->time();
    return m_latest;
}

}
