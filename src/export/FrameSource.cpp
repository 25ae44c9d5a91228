#include "export/FrameSource.h"

#include "export/ExportOptions.h"

#include <algorithm>

namespace pointloom {

namespace {

constexpr auto pollInterval = std::chrono::milliseconds(50);
constexpr std::size_t framesAhead = 3; // enough to ride out a key frame, little memory at 4K

}

FrameSource::FrameSource(media::VideoReader reader, media::FrameConverter converter, const TrimRange& range)
    : m_reader(std::move(reader))
    , m_converter(std::move(converter))
    , m_range(range)
    , m_queue(framesAhead)
    , m_thread([this] { run(); }) {}

FrameSource::~FrameSource() {
    m_isStopped = true;
    m_queue.close();
    m_thread.join();
}

std::optional<TrimmedFrame> FrameSource::next(const std::function<bool()>& isCancelled) {
    while (!m_queue.waitForValue(pollInterval))
        throwIfCancelled(isCancelled);
    auto frame = m_queue.pop();
    if (!frame && m_failure)
        std::rethrow_exception(m_failure);
    return frame;
}

void FrameSource::run() {
    try {
        decode();
    } catch (...) {
        m_failure = std::current_exception();
    }
    m_queue.close();
}

// Each frame waits for the one after it, which tells how long it is shown.
void FrameSource::decode() {
    m_reader.seek(decodingStart(), [this] { return m_isStopped.load(); });
    std::optional<double> lastTime;
    auto current = nextConverted();
    while (current) {
        auto following = nextConverted();
        const auto nextTimestamp = following ? std::optional(following->timestamp()) : std::nullopt;
        const auto stay =
            m_range.place(current->timestamp(), current->duration(), nextTimestamp, current->timeBase());
        if (!stay && m_range.isBehind(current->timestamp(), current->timeBase()))
            break;
        lastTime = current->time();
        if (stay && (following || !isLostBefore(*current))) {
            const double sourceTime = m_range.shownFrom(current->time());
            current->makeWritable();
            current->setTimestamp(stay->timestamp, stay->duration);
            if (!m_queue.push({std::move(*current), sourceTime}))
                return;
        }
        current = std::move(following);
    }
    assessDamage(lastTime);
}

// The last picture of a video that was cut short before the range would stand for all that is missing.
bool FrameSource::isLostBefore(const media::VideoFrame& last) const {
    const double end = last.time() + static_cast<double>(last.duration()) * last.timeBase().value();
    return end <= m_range.start() && m_reader.damage().secondsMissing > 0;
}

void FrameSource::assessDamage(std::optional<double> lastTime) {
    m_damage = m_reader.damage();
    const auto end = m_range.decodingEnd(m_reader.track().timeBase);
    if (end && lastTime) // pictures that nobody asked for are not missed
        m_damage.secondsMissing = std::min(m_damage.secondsMissing, std::max(0.0, *end - *lastTime));
}

// A deinterlaced picture takes lines from those around it.
double FrameSource::decodingStart() const {
    const media::VideoTrackInfo& track = m_reader.track();
    const double start = m_range.decodingStart(track.timeBase);
    const double lead =
        track.interlaced && m_range.windowStart(track.timeBase) > 0 ? 2 / track.frameRate.value() : 0;
    return std::max(start - lead, 0.0);
}

std::optional<media::VideoFrame> FrameSource::nextConverted() {
    while (true) {
        if (auto converted = m_converter.pull())
            return converted;
        if (m_readerIsDone || m_isStopped)
            return std::nullopt;
        if (auto frame = m_reader.read()) {
            m_converter.push(std::move(*frame));
        } else {
            m_converter.finish();
            m_readerIsDone = true;
        }
    }
}

}
