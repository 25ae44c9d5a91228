#include "media/SegmentJoin.h"

#include "media/InputFile.h"
#include "media/OutputFile.h"
#include "media/SideData.h"

#include <algorithm>
#include <limits>
#include <QFileInfo>
#include <queue>

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

/// Reads the packets of a segment's only track unchanged.
class SegmentReader {
public:
    /// Opens a file with exactly one track, of video or of sound. Throws MediaError, which names the file.
    SegmentReader(const QString& path, AVMediaType type)
        : m_path(path)
        , m_file(openSegment(path))
        , m_packet(makePacket()) {
        if (m_file.context()->nb_streams != 1 || track().codecpar->codec_type != type)
            fail("the file is not a segment of this plan");
    }

    const AVStream& track() const { return *m_file.context()->streams[0]; }

    /// The next packet in the order of decoding, `offset` ticks later than in the segment; null at the end.
    /// Throws MediaError when the file holds fewer packets than its index.
    AVPacket* next(std::int64_t offset = 0) {
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

    /// Throws MediaError unless the tracks of both can be joined.
    void requireAlike(const SegmentReader& other) const {
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

private:
    // The index holds the distance to the next packet in the order of decoding, and FFmpeg tells none where
    // frames are reordered unevenly; the frame that is shown last may be shown for a shorter time.
    void limitDuration() {
        if (track().duration == AV_NOPTS_VALUE)
            return;
        const std::int64_t start = track().start_time == AV_NOPTS_VALUE ? 0 : track().start_time;
        const std::int64_t left = start + track().duration - m_packet->pts;
        if (left > 0)
            m_packet->duration = m_packet->duration > 0 ? std::min(m_packet->duration, left) : left;
    }

    [[noreturn]] void fail(const std::string& reason) const { failFor(m_path, reason); }

    QString m_path;
    InputFile m_file;
    PacketPtr m_packet;
    std::int64_t m_packets = 0;
};

/// Times of decoding across the joints of segments. Each segment's encoder began to count anew, before its
/// own first frame, which would overlap the segment before. A single encoder gives each packet, in the order
/// of decoding, the time of the frame that is as many places earlier in the order of presentation as frames
/// may be reordered; so does this.
class JoinedDecodeTimes {
public:
    /// The time for the next packet, in ticks of the joined file; `decoding` is its encoder's.
    std::int64_t next(std::int64_t showing, std::int64_t decoding) {
        m_waiting.push(showing);
        if (m_isFirst)
            m_begin = showing;
        m_isFirst = false;
        const bool isLead = m_popped == 0 && decoding < m_begin; // of the first segment
        if (isLead)
            return decoding;
        ++m_popped;
        const std::int64_t time = m_waiting.top();
        m_waiting.pop();
        return time;
    }

private:
    std::priority_queue<std::int64_t, std::vector<std::int64_t>, std::greater<>> m_waiting;
    std::size_t m_popped = 0;
    std::int64_t m_begin = 0;
    bool m_isFirst = true;
};

// The packets of all segments as one track.
class VideoTrack {
public:
    explicit VideoTrack(const JoinRequest& request)
        : m_request(request)
        , m_reader(open(0)) {
        requireClock();
    }

    const AVStream& first() const { return m_reader->track(); }

    /// Null at the end.
    AVPacket* next() {
        AVPacket* packet = m_reader->next(m_request.segments[m_segment].offset);
        while (packet == nullptr && m_segment + 1 < m_request.segments.size()) {
            openNext();
            packet = m_reader->next(m_request.segments[m_segment].offset);
        }
        if (packet == nullptr)
            return nullptr;
        if (m_hasBefore && packet->pts <= m_before)
            fail("the segment begins before the one ahead of it has ended");
        m_latest = std::max(m_latest, packet->pts);
        packet->dts = m_times.next(packet->pts, packet->dts);
        if (packet->dts > packet->pts || packet->dts <= m_lastDecoding)
            fail("the times of its pictures do not follow those of the segment before");
        m_lastDecoding = packet->dts;
        return packet;
    }

private:
    std::unique_ptr<SegmentReader> open(std::size_t segment) const {
        if (m_request.beforeSegment)
            m_request.beforeSegment(segment);
        return std::make_unique<SegmentReader>(m_request.segments.at(segment).path, AVMEDIA_TYPE_VIDEO);
    }

    void openNext() {
        auto reader = open(m_segment + 1);
        reader->requireAlike(*m_reader);
        m_reader = std::move(reader);
        ++m_segment;
        m_before = m_latest;
        m_hasBefore = true;
    }

    void requireClock() const {
        if (av_cmp_q(first().time_base, toAv(m_request.timeBase)) != 0)
            fail("the segment counts time in other units than the plan");
    }

    [[noreturn]] void fail(const char* reason) const { failFor(m_request.segments[m_segment].path, reason); }

    const JoinRequest& m_request;
    std::unique_ptr<SegmentReader> m_reader; // of the segment that is being copied
    std::size_t m_segment = 0;
    JoinedDecodeTimes m_times;
    std::int64_t m_latest = std::numeric_limits<std::int64_t>::min(); // shown, of all copied
    std::int64_t m_before = 0; // latest shown of the segments before this one
    bool m_hasBefore = false;
    std::int64_t m_lastDecoding = std::numeric_limits<std::int64_t>::min();
};

std::int64_t bytesOf(const JoinRequest& request) {
    std::int64_t bytes = request.soundPath ? QFileInfo(*request.soundPath).size() : 0;
    for (const SegmentFile& segment : request.segments)
        bytes += QFileInfo(segment.path).size();
    return bytes;
}

bool isEarlier(const AVPacket& packet, AVRational timeBase, const AVPacket& other, AVRational otherTimeBase) {
    return av_compare_ts(packet.dts, timeBase, other.dts, otherTimeBase) < 0;
}

}

QString readComment(const QString& path) {
    const InputFile file = InputFile::open(path);
    const AVDictionaryEntry* entry = av_dict_get(file.context()->metadata, "comment", nullptr, 0);
    return entry == nullptr ? QString() : QString::fromUtf8(entry->value);
}

void joinSegments(const JoinRequest& request,
                  const std::function<void(std::int64_t, std::int64_t)>& onProgress) {
    VideoTrack video(request);
    std::optional<SegmentReader> sound;
    if (request.soundPath)
        sound.emplace(*request.soundPath, AVMEDIA_TYPE_AUDIO);

    OutputFile file(request.outputPath, request.isQuickTime ? "mov" : "mp4");
    const AVStream& videoTrack = file.addTrack(video.first());
    const AVStream* soundTrack = sound ? &file.addTrack(sound->track()) : nullptr;
    file.addTexts(request.texts);
    file.writeHeader(request.timeBase);

    const AVRational frameClock = toAv(request.timeBase);
    const std::int64_t all = bytesOf(request);
    std::int64_t copied = 0;
    AVPacket* frame = video.next();
    AVPacket* run = sound ? sound->next() : nullptr;
    while (frame != nullptr || run != nullptr) {
        const bool takesVideo = run == nullptr || (frame != nullptr && isEarlier(*frame, frameClock, *run,
                                                                                 sound->track().time_base));
        AVPacket& packet = takesVideo ? *frame : *run;
        copied += packet.size;
        onProgress(copied, all);
        if (takesVideo) {
            file.write(packet, videoTrack, frameClock);
            frame = video.next();
        } else {
            file.write(packet, *soundTrack, sound->track().time_base);
            run = sound->next();
        }
    }
    file.finish();
}

}
