#include "export/FrameSource.h"

#include <algorithm>

namespace pointloom {

namespace {

constexpr auto pollInterval = std::chrono::milliseconds(50);
constexpr std::size_t framesAhead = 3; // bridges the time that a key frame takes; little memory at 4K

}

std::optional<media::VideoFrame> ConvertedFrames::next() {
    while (true) {
        if (auto converted = m_converter.pull())
            return converted;
        if (m_readerIsDone)
            return std::nullopt;
        if (auto frame = m_reader.read()) {
            m_converter.push(std::move(*frame));
        } else {
            m_converter.finish();
            m_readerIsDone = true;
        }
    }
}

// The filters are made anew: they keep frames from before the seek.
void ConvertedFrames::seek(double time, const std::function<bool()>& isStopped) {
    m_reader.seek(time, isStopped);
    m_converter = media::FrameConverter(m_reader.track(), m_target);
    m_readerIsDone = false;
}

FrameSource::FrameSource(ConvertedFrames frames, std::vector<ExportPart> parts)
    : m_frames(std::move(frames))
    , m_parts(std::move(parts))
    , m_thread([this] { run(); }) {}

FrameSource::~FrameSource() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopped = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

std::optional<TrimmedFrame> FrameSource::next(const ExportControl& control) {
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, pollInterval, [&] { return m_isDone || !m_queue.empty(); })) {
        lock.unlock();
        control.throwIfCancelled();
        lock.lock();
    }
    if (m_queue.empty()) {
        if (m_failure)
            std::rethrow_exception(m_failure);
        return std::nullopt;
    }
    std::optional frame(std::move(m_queue.front()));
    m_queue.pop_front();
    m_changed.notify_all();
    return frame;
}

// Waits for space. False when the frame is not taken any more.
bool FrameSource::push(TrimmedFrame frame) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_isStopped || m_queue.size() < framesAhead; });
    if (m_isStopped)
        return false;
    m_queue.push_back(std::move(frame));
    m_changed.notify_all();
    return true;
}

void FrameSource::run() {
    try {
        for (auto part = m_parts.begin(); part != m_parts.end() && !m_isStopped; ++part)
            decode(*part);
    } catch (...) {
        m_failure = std::current_exception();
    }
    const std::lock_guard lock(m_mutex);
    m_isDone = true;
    m_changed.notify_all();
}

// Each frame waits for the one after it, which tells how long it is shown.
void FrameSource::decode(const ExportPart& part) {
    const TrimRange& range = part.range;
    m_frames.seek(decodingStart(range), [this] { return m_isStopped.load(); });
    std::optional<double> lastTime;
    auto current = m_frames.next();
    while (current && !m_isStopped) {
        auto following = m_frames.next();
        const auto nextTimestamp = following ? std::optional(following->timestamp()) : std::nullopt;
        const auto stay =
            range.place(current->timestamp(), current->duration(), nextTimestamp, current->timeBase());
        if (!stay && range.isAfter(current->timestamp(), current->timeBase()))
            break;
        lastTime = current->time();
        if (stay && (following || !isLostBefore(range, *current))) {
            const double sourceTime = range.shownFrom(current->time());
            current->makeWritable();
            current->setTimestamp(part.offset + stay->timestamp, stay->duration);
            if (!push({std::move(*current), sourceTime}))
                return;
        }
        current = std::move(following);
    }
    assessDamage(range, lastTime);
}

// True for the last frame of a video that was cut short before the range: it must not be extended over all
// that is missing.
bool FrameSource::isLostBefore(const TrimRange& range, const media::VideoFrame& last) const {
    const double end = last.time() + static_cast<double>(last.duration()) * last.timeBase().value();
    return end <= range.start() && m_frames.reader().damage().secondsMissing > 0;
}

void FrameSource::assessDamage(const TrimRange& range, std::optional<double> lastTime) {
    media::Damage damage = m_frames.reader().damage();
    const media::Rational timeBase = m_frames.reader().track().timeBase;
    const auto end = range.decodingEnd(timeBase);
    if (end && lastTime) { // frames after the part, and those before it, do not count as missing
        const double from =
            m_parts.size() > 1 ? std::max(*lastTime, range.decodingStart(timeBase)) : *lastTime;
        damage.secondsMissing = std::min(damage.secondsMissing, std::max(0.0, *end - from));
    }
    m_damage.lostFrames += damage.lostFrames;
    m_damage.faultyFrames += damage.faultyFrames;
    m_damage.secondsMissing += damage.secondsMissing;
}

// Seconds. A deinterlaced frame takes lines from those around it.
double FrameSource::decodingStart(const TrimRange& range) const {
    const media::VideoTrackInfo& track = m_frames.reader().track();
    const double start = range.decodingStart(track.timeBase);
    const double lead =
        track.interlaced && range.windowStart(track.timeBase) > 0 ? 2 / track.frameRate.value() : 0;
    return std::max(start - lead, 0.0);
}

}
