#include "media/Recording.h"

#include "media/InputFile.h"
#include "media/OpenedMedia.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>
#include <mutex>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace pointloom::media {

namespace {

std::int64_t rescaled(std::int64_t ticks, Rational from, Rational to) {
    return from == to ? ticks : av_rescale_q(ticks, toAv(from), toAv(to));
}

/// Times of packets that are shown, in ticks of the stream.
struct ShownTimes {
    std::optional<std::int64_t> earliest;
    std::optional<std::int64_t> latest;
    std::int64_t lengthOfLatest = 0; // 0 when unknown

    /// Reads up to `count` packets.
    void read(AVFormatContext* context, int stream, int count) {
        constexpr int mostFailures = 1000;
        const PacketPtr packet = makePacket();
        for (int failures = 0; count > 0 && failures < mostFailures;) {
            const int result = av_read_frame(context, packet.get());
            if (result == AVERROR_EOF || result == AVERROR_EXIT)
                return;
            if (result < 0) {
                ++failures;
                continue;
            }
            if (packet->stream_index == stream && (packet->flags & AV_PKT_FLAG_DISCARD) == 0 &&
                packet->pts != AV_NOPTS_VALUE) {
                add(*packet);
                --count;
            }
            av_packet_unref(packet.get());
        }
    }

    void add(const AVPacket& packet) {
        earliest = std::min(earliest.value_or(packet.pts), packet.pts);
        if (latest && packet.pts <= *latest)
            return;
        latest = packet.pts;
        lengthOfLatest = packet.duration;
    }
};

std::optional<std::int64_t> creationTime(const AVFormatContext& context) {
    const AVDictionaryEntry* entry = av_dict_get(context.metadata, "creation_time", nullptr, 0);
    if (entry == nullptr)
        return std::nullopt;
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(entry->value), Qt::ISODateWithMs);
    constexpr int firstPlausibleYear = 2000; // a clock that was never set starts in 1904 or 1970
    if (!time.isValid() || time.date().year() < firstPlausibleYear)
        return std::nullopt;
    return time.toMSecsSinceEpoch();
}

FileFacts measured(const QString& path) {
    constexpr int mostReordered = 32;  // packets
    constexpr double beforeTheEnd = 2; // seconds
    FileFacts facts;
    facts.info = readMediaInfo(path);
    InputFile file = InputFile::open(path);
    AVFormatContext* context = file.context();
    const std::optional<int> index = findVideoTrack(*context);
    if (!index || !facts.info.video) {
        requireDecoders(*context);
        throw NoVideoTrackError("the file has no video track");
    }
    facts.createdAt = creationTime(*context);
    file.keepOnly(*index);
    const AVStream& stream = *context->streams[*index];
    ShownTimes shown;
    shown.read(context, *index, mostReordered);
    if (!shown.earliest)
        throw MediaError("no picture could be decoded", MediaFault::damaged);

    const double tick = av_q2d(stream.time_base);
    const bool isLengthKnown = stream.duration != AV_NOPTS_VALUE && stream.duration > 0;
    const std::int64_t indexed = *shown.earliest + (isLengthKnown ? stream.duration : 0);
    const auto target = indexed - static_cast<std::int64_t>(beforeTheEnd / tick);
    if (target > *shown.earliest)
        av_seek_frame(context, *index, target, AVSEEK_FLAG_BACKWARD); // else all of it is read
    shown.read(context, *index, std::numeric_limits<int>::max());

    const double frame = 1 / (facts.info.video->frameRate.value() * tick); // ticks
    const bool isPlausible =
        shown.lengthOfLatest > 0 && static_cast<double>(shown.lengthOfLatest) <= 2 * frame;
    std::int64_t end = *shown.latest + (isPlausible ? shown.lengthOfLatest : std::llround(frame));
    if (static_cast<double>(indexed - end) > 2 * frame)
        end = indexed; // frames are missing at the end and keep their time
    const std::int64_t refinement = clockRefinement(stream);
    facts.first = refinedTicks(*shown.earliest, refinement);
    facts.end = refinedTicks(end, refinement);
    return facts;
}

struct KnownFile {
    std::int64_t size = 0;
    QDateTime modified;
    FileFacts facts;
};

/// The facts of files that were measured.
class KnownFiles {
public:
    static KnownFiles& shared() {
        static KnownFiles files;
        return files;
    }

    std::optional<FileFacts> find(const QFileInfo& file) {
        const std::scoped_lock lock(m_mutex);
        const auto found = m_files.find(file.absoluteFilePath());
        if (found == m_files.end() || found->second.size != file.size() ||
            found->second.modified != file.lastModified())
            return std::nullopt;
        return found->second.facts;
    }

    void add(const QFileInfo& file, const FileFacts& facts) {
        constexpr std::size_t most = 1000;
        const std::scoped_lock lock(m_mutex);
        if (m_files.size() >= most)
            m_files.clear();
        m_files[file.absoluteFilePath()] = {file.size(), file.lastModified(), facts};
    }

private:
    std::mutex m_mutex;
    std::map<QString, KnownFile> m_files;
};

}

FileFacts factsOf(const QString& path) {
    const QFileInfo file(path);
    if (auto known = KnownFiles::shared().find(file))
        return *known;
    FileFacts facts = measured(path);
    KnownFiles::shared().add(file, facts);
    return facts;
}

double RecordingLayout::beginOf(std::size_t file) const {
    return file == 0 ? 0 : static_cast<double>(files[file].begin) * timeBase.value();
}

double RecordingLayout::offsetOf(std::size_t file) const {
    return file == 0 ? 0 : static_cast<double>(files[file].offset) * timeBase.value();
}

std::size_t RecordingLayout::fileAt(std::int64_t ticks) const {
    std::size_t file = files.size() - 1;
    while (file > 0 && files[file].begin > ticks)
        --file;
    return file;
}

std::size_t RecordingLayout::fileAt(double time) const {
    std::size_t file = files.size() - 1;
    while (file > 0 && beginOf(file) > time)
        --file;
    return file;
}

std::int64_t RecordingLayout::placed(std::int64_t ownTicks, std::size_t file) const {
    return file == 0 ? ownTicks : rescaled(ownTicks, files[file].timeBase, timeBase) + files[file].offset;
}

std::int64_t RecordingLayout::ownTicks(std::int64_t ticks, std::size_t file) const {
    return file == 0 ? ticks : rescaled(ticks - files[file].offset, timeBase, files[file].timeBase);
}

std::vector<Difference> differences(const MediaInfo& first, const MediaInfo& further) {
    const VideoTrackInfo& a = *first.video;
    const VideoTrackInfo& b = *further.video;
    const auto shapeOf = [](QSize size) { return static_cast<double>(size.width()) / size.height(); };
    constexpr double sameShape = 0.01;
    constexpr double sameRate = 0.005;
    const double stretch = shapeOf(b.uprightSize()) / shapeOf(a.uprightSize());
    std::vector<Difference> found;
    if (!(std::abs(stretch - 1) < sameShape) || a.orientation != b.orientation ||
        a.interlaced != b.interlaced)
        found.push_back(Difference::shape);
    if (a.uprightSize() != b.uprightSize())
        found.push_back(Difference::size);
    if (!(std::abs(b.frameRate.value() / a.frameRate.value() - 1) < sameRate))
        found.push_back(Difference::rate);
    if (a.codecName != b.codecName)
        found.push_back(Difference::codec);
    if (a.color.transfer != b.color.transfer)
        found.push_back(Difference::light);
    if (first.audioTracks != further.audioTracks)
        found.push_back(Difference::sound);
    return found;
}

RecordingLayout layoutOf(const Recording& recording) {
    RecordingLayout layout;
    if (!recording.isSplit()) {
        layout.files.push_back({recording.first(), {}, 0, 0});
        return layout;
    }
    std::int64_t end = 0;
    MediaInfo first;
    for (const QString& path : recording.files()) {
        FileFacts facts;
        try {
            facts = factsOf(path);
        } catch (const MediaError& error) {
            throw named(error, path);
        }
        const Rational clock = facts.info.video->timeBase;
        if (layout.files.empty()) {
            first = facts.info;
            layout.timeBase = clock;
            layout.files.push_back({path, clock, facts.first, 0});
            end = facts.end;
        } else {
            const std::vector<Difference> others = differences(first, facts.info);
            if (std::ranges::find(others, Difference::shape) != others.end())
                throw named(MediaError("its picture has another shape than that of the first file"), path);
            const std::int64_t offset = end - rescaled(facts.first, clock, layout.timeBase);
            layout.files.push_back({path, clock, end, offset});
            end = rescaled(facts.end, clock, layout.timeBase) + offset;
        }
        layout.audioTracks = std::max(layout.audioTracks, facts.info.audioTracks);
        layout.duration = layout.offsetOf(layout.files.size() - 1) + facts.info.duration;
    }
    return layout;
}

MovedTime movedTime(double time, const RecordingLayout& from, const RecordingLayout& to) {
    const std::size_t own = from.fileAt(time);
    for (std::size_t file = own; file < from.files.size(); ++file) {
        const auto found = std::ranges::find(to.files, from.files[file].path, &PlacedFile::path);
        if (found == to.files.end())
            continue;
        const auto there = static_cast<std::size_t>(found - to.files.begin());
        return file == own ? MovedTime{std::max(0.0, time - from.offsetOf(own) + to.offsetOf(there)), false}
                           : MovedTime{to.beginOf(there), true};
    }
    return {std::numeric_limits<double>::infinity(), true};
}

MediaInfo infoOf(const Recording& recording) {
    MediaInfo info = readMediaInfo(recording.first());
    if (recording.isSplit()) {
        const RecordingLayout layout = layoutOf(recording);
        info.duration = layout.duration;
        info.audioTracks = layout.audioTracks;
    }
    return info;
}

MediaError named(const MediaError& error, const QString& path) {
    return MediaError(QFileInfo(path).fileName().toStdString() + ": " + error.what(), error.fault());
}

}
