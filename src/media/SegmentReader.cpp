#include "media/SegmentReader.h"

#include "media/DisplayMatrix.h"

#include <algorithm>
#include <QFileInfo>

namespace pointloom::media {

namespace {

constexpr auto damaged = "the file is damaged or cut short; remove it and encode this segment again";

[[noreturn]] void failFor(const QString& path, const std::string& reason) {
    throw MediaError(QFileInfo(path).fileName().toStdString() + ": " + reason);
}

InputFile openSegment(const QString& path) {
    try {
        return InputFile::open(path);
    } catch (const MediaError& error) {
        failFor(path, error.what());
    }
}

bool sameBytes(const AVCodecParameters& a, const AVCodecParameters& b) {
    return a.extradata_size == b.extradata_size &&
           std::equal(a.extradata, a.extradata + a.extradata_size, b.extradata);
}

}

SegmentReader::SegmentReader(const QString& path, AVMediaType type)
    : m_path(path)
    , m_file(openSegment(path))
    , m_packet(makePacket()) {
    if (m_file.context()->nb_streams != 1 || track().codecpar->codec_type != type)
        fail("the file is not a segment of this plan");
}

AVPacket* SegmentReader::next(std::int64_t offset) {
    av_packet_unref(m_packet.get());
    const int read = av_read_frame(m_file.context(), m_packet.get());
    if (read < 0) {
        if (read != AVERROR_EOF || m_packets < track().nb_frames)
            fail(damaged);
        return nullptr;
    }
    if (m_packet->pts == AV_NOPTS_VALUE || m_packet->dts == AV_NOPTS_VALUE ||
        (m_packet->flags & AV_PKT_FLAG_CORRUPT) != 0)
        fail(damaged);
    if (m_packets == 0 && (m_packet->flags & AV_PKT_FLAG_KEY) == 0)
        fail("the segment does not begin with a key frame; remove it and encode this segment again");
    ++m_packets;
    limitDuration();
    m_packet->pts += offset;
    m_packet->dts += offset;
    m_packet->flags &= ~AV_PKT_FLAG_DISCARD;
    return m_packet.get();
}

// The index names the distance to the packet that follows in the order of decoding; the picture that is shown
// last may be shown for a shorter time.
void SegmentReader::limitDuration() {
    if (track().duration == AV_NOPTS_VALUE)
        return;
    const std::int64_t start = track().start_time == AV_NOPTS_VALUE ? 0 : track().start_time;
    const std::int64_t left = start + track().duration - m_packet->pts;
    if (left > 0)
        m_packet->duration = std::min(m_packet->duration, left);
}

void SegmentReader::requireAlike(const SegmentReader& other) const {
    const AVCodecParameters& mine = *track().codecpar;
    const AVCodecParameters& theirs = *other.track().codecpar;
    const char* difference = nullptr;
    if (mine.codec_id != theirs.codec_id || mine.codec_tag != theirs.codec_tag)
        difference = "its codec";
    else if (mine.width != theirs.width || mine.height != theirs.height || mine.format != theirs.format)
        difference = "the size or layout of its pictures";
    else if (av_cmp_q(track().time_base, other.track().time_base) != 0)
        difference = "its clock";
    else if (mine.color_space != theirs.color_space || mine.color_trc != theirs.color_trc ||
             mine.color_primaries != theirs.color_primaries || mine.color_range != theirs.color_range)
        difference = "its colours";
    else if (readOrientation(track()) != readOrientation(other.track()))
        difference = "its orientation";
    else if (!sameBytes(mine, theirs))
        difference = "its encoder's settings";
    if (difference != nullptr)
        fail(std::string("the segment differs from the others in ") + difference +
             "; encode it again with the same versions of the program and its libraries");
}

void SegmentReader::fail(const std::string& reason) const {
    failFor(m_path, reason);
}

}
