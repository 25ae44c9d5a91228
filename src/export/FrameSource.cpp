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

FrameSource::FrameSource(ConvertedFrames frames, const TrimRange& range)
    : m_frames(std::move(frames))
    , m_range(range)
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
        decode();
    } catch (...) {
        m_failure = std::current_exception();
    }
    const std::lock_guard lock(m_mutex);
    m_isDone = true;
    m_changed.notify_all();
}

// Each frame waits for the one after it, which tells how long it is shown.
void FrameSource::decode() {
    m_frames.reader().seek(decodingStart(), [this] { return m_isStopped.load(); });
    std::optional<double> lastTime;
    auto current = m_frames.next();
    while (current && !m_isStopped) {
        auto following = m_frames.next();
        const auto nextTimestamp = following ? std::optional(following->timestamp()) : std::nullopt;
        const auto stay =
            m_range.place(current->timestamp(), current->duration(), nextTimestamp, current->timeBase());
        if (!stay && m_range.isAfter(current->timestamp(), current->timeBase()))
            break;
        lastTime = current->time();
        if (stay && (following || !isLostBefore(*current))) {
            const double sourceTime = m_range.shownFrom(current->time());
            current->makeWritable();
            current->setTimestamp(stay->timestamp, stay->duration);
            if (!push({std::move(*current), sourceTime}))
                return;
        }
        current = std::move(following);
    }
    assessDamage(lastTime);
}

// True for the last frame of a video that was cut short before the range: it must not be extended over all
// that is missing.
bool FrameSource::isLostBefore(const media::VideoFrame& last) {
    const double end = last.time() + static_cast<double>(last.duration()) * last.timeBase().value();
    return end <= m_range.start() && m_frames.reader().damage().secondsMissing > 0;
}

void FrameSource::assessDamage(std::optional<double> lastTime) {
    m_damage = m_frames.reader().damage();
    const auto end = m_range.decodingEnd(m_frames.reader().track().timeBase);
    if (end && lastTime) // frames after the range do not count as missing
        m_damage.secondsMissing = std::min(m_damage.secondsMissing, std::max(0.0, *end - *lastTime));
}

// Seconds. A deinterlaced frame takes lines from those around it.
double FrameSource::decodingStart() {
    const media::VideoTrackInfo& track = m_frames.reader().track();
    const double start = m_range.decodingStart(track.timeBase);
    const double lead =
        track.interlaced && m_range.windowStart(track.timeBase) > 0 ? 2 / track.frameRate.value() : 0;
    return std::max(start - lead, 0.0);
}

}
