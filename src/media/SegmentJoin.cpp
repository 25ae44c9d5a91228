#include "media/SegmentJoin.h"

#include "media/JoinedDecodeTimes.h"
#include "media/OutputFile.h"
#include "media/SegmentReader.h"

#include <algorithm>
#include <QFileInfo>

namespace pointloom::media {

namespace {

// The packets of all segments as one track.
class PictureTrack {
public:
    explicit PictureTrack(const JoinRequest& request)
        : m_request(request)
        , m_reader(std::make_unique<SegmentReader>(request.pictures.at(0).path, AVMEDIA_TYPE_VIDEO)) {
        requireClock();
    }

    const AVStream& first() const { return m_reader->track(); }

    /// Null at the end.
    AVPacket* next() {
        AVPacket* packet = m_reader->next(m_request.pictures[m_segment].offset);
        while (packet == nullptr && m_segment + 1 < m_request.pictures.size()) {
            openNext();
            packet = m_reader->next(m_request.pictures[m_segment].offset);
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
    void openNext() {
        auto reader =
            std::make_unique<SegmentReader>(m_request.pictures[m_segment + 1].path, AVMEDIA_TYPE_VIDEO);
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

    [[noreturn]] void fail(const char* reason) const {
        throw MediaError(QFileInfo(m_request.pictures[m_segment].path).fileName().toStdString() + ": " +
                         reason);
    }

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
    for (const SegmentFile& segment : request.pictures)
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

bool joinSegments(const JoinRequest& request, const std::function<bool(std::int64_t, std::int64_t)>& goesOn) {
    PictureTrack pictures(request);
    std::optional<SegmentReader> sound;
    if (request.soundPath)
        sound.emplace(*request.soundPath, AVMEDIA_TYPE_AUDIO);

    OutputFile file(request.outputPath, request.isQuickTime ? "mov" : "mp4");
    const AVStream& pictureTrack = file.addTrack(pictures.first());
    const AVStream* soundTrack = sound ? &file.addTrack(sound->track()) : nullptr;
    for (const Chapter& chapter : request.chapters)
        file.addChapter(chapter);
    file.writeHeader(request.timeBase);

    const AVRational pictureClock = toAv(request.timeBase);
    const std::int64_t all = bytesOf(request);
    std::int64_t copied = 0;
    AVPacket* picture = pictures.next();
    AVPacket* run = sound ? sound->next() : nullptr;
    while (picture != nullptr || run != nullptr) {
        const bool takesPicture =
            run == nullptr ||
            (picture != nullptr && isEarlier(*picture, pictureClock, *run, sound->track().time_base));
        AVPacket& packet = takesPicture ? *picture : *run;
        copied += packet.size;
        if (!goesOn(copied, all))
            return false;
        if (takesPicture) {
            file.write(packet, pictureTrack, pictureClock);
            picture = pictures.next();
        } else {
            file.write(packet, *soundTrack, sound->track().time_base);
            run = sound->next();
        }
    }
    file.finish();
    return true;
}

}
