#include "ui/timeline/WaveformStore.h"

#include "media/AudioReader.h"
#include "ui/timeline/ClipCache.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <QElapsedTimer>
#include <utility>

namespace pointloom {

namespace {

constexpr auto peaksName = "waveform-1"; // the numbers change with the meaning of what is kept
constexpr auto momentsName = "moments-1";
constexpr qint64 largestWaveform = 32LL << 20; // bytes; more than a day
constexpr qint64 largestMoments = 8LL << 20;
constexpr qint64 tellAfter = 150; // milliseconds between two deliveries of peaks
constexpr int samplesOfPeak = media::audioSampleRate / WaveformPyramid::peaksPerSecond;
static_assert(samplesOfPeak * WaveformPyramid::peaksPerSecond == media::audioSampleRate,
              "peaks must not drift");

/// Reduces sound to peaks.
class PeakCounter {
public:
    /// Appends the peaks that are complete to `peaks`, one byte each.
    void add(const media::AudioFrame& sound, QByteArray& peaks) {
        const auto left = sound.channel(0);
        const auto right = sound.channel(1);
        for (std::size_t i = 0; i < left.size(); ++i) {
            m_loudest = std::max({m_loudest, std::abs(left[i]), std::abs(right[i])});
            if (++m_samples < samplesOfPeak)
                continue;
            peaks.append(
                static_cast<char>(static_cast<unsigned char>(std::lround(std::min(m_loudest, 1.0F) * 255))));
            m_loudest = 0;
            m_samples = 0;
        }
    }

private:
    float m_loudest = 0; // of the unfinished peak, [0, 1]
    int m_samples = 0;
};

QByteArray bytesOf(const std::vector<media::LoudMoment>& moments) {
    return {reinterpret_cast<const char*>(moments.data()),
            static_cast<qsizetype>(moments.size() * sizeof(media::LoudMoment))};
}

/// Empty when the bytes are damaged.
std::optional<std::vector<media::LoudMoment>> momentsFrom(const QByteArray& bytes) {
    std::vector<media::LoudMoment> moments(static_cast<std::size_t>(bytes.size()) /
                                           sizeof(media::LoudMoment));
    std::memcpy(moments.data(), bytes.constData(), moments.size() * sizeof(media::LoudMoment));
    double latest = 0; // seconds
    for (const media::LoudMoment& moment : moments) {
        if (!(moment.start >= latest && moment.end >= moment.start)) // NaN too
            return std::nullopt;
        latest = moment.end;
    }
    return bytesOf(moments).size() == bytes.size() ? std::optional(moments) : std::nullopt;
}

/// Reads the sound of one clip on a worker, from the cache where it is known.
class SoundReading {
public:
    SoundReading(const QString& cacheRoot, media::Recording recording)
        : m_recording(std::move(recording))
        , m_cache(cacheRoot, m_recording) {}

    void run(const BackgroundWorker::Link& link, const std::function<void(SoundPiece)>& tell) {
        const auto peaks = m_cache.read(QLatin1String(peaksName), largestWaveform);
        const auto bytes = m_cache.read(QLatin1String(momentsName), largestMoments);
        const auto moments = bytes ? momentsFrom(*bytes) : std::nullopt;
        if (peaks && moments)
            return tell({*peaks, *moments});
        auto reader = media::AudioReader::open(m_recording, 0, std::nullopt);
        if (!reader)
            return;
        QElapsedTimer sinceTold;
        sinceTold.start();
        while (!link.isCancelled() && m_all.peaks.size() < largestWaveform) {
            const auto sound = reader->read();
            if (!sound)
                break;
            m_peaks.add(*sound, m_new.peaks);
            m_moments.add(sound->channel(0), sound->channel(1));
            if (sinceTold.elapsed() >= tellAfter) {
                tell(flush());
                sinceTold.restart();
            }
        }
        if (link.isCancelled())
            return;
        m_moments.finish();
        tell(flush());
        m_cache.write(QLatin1String(peaksName), m_all.peaks);
        m_cache.write(QLatin1String(momentsName), bytesOf(m_all.moments));
    }

private:
    /// What was read since the last call.
    SoundPiece flush() {
        m_new.moments = m_moments.take();
        m_all.peaks += m_new.peaks;
        m_all.moments.insert(m_all.moments.end(), m_new.moments.begin(), m_new.moments.end());
        return std::exchange(m_new, {});
    }

    media::Recording m_recording;
    ClipCache m_cache;
    PeakCounter m_peaks;
    media::LoudMomentFinder m_moments;
    SoundPiece m_new; // not told yet
    SoundPiece m_all;
};

}

void WaveformPyramid::append(std::span<const std::uint8_t> peaks) {
    std::size_t changed = m_levels[0].size();
    for (const std::uint8_t peak : peaks)
        m_loudest = std::max(m_loudest, peak);
    m_levels[0].insert(m_levels[0].end(), peaks.begin(), peaks.end());
    for (std::size_t level = 1; level < levelCount; ++level) {
        const auto& below = m_levels[level - 1];
        auto& here = m_levels[level];
        changed /= childrenOfPeak;
        here.resize((below.size() + childrenOfPeak - 1) / childrenOfPeak);
        for (std::size_t i = changed; i < here.size(); ++i) {
            const auto first = below.begin() + static_cast<std::ptrdiff_t>(i * childrenOfPeak);
            const auto count = std::min(childrenOfPeak, below.size() - i * childrenOfPeak);
            here[i] = *std::max_element(first, first + static_cast<std::ptrdiff_t>(count));
        }
    }
}

void WaveformPyramid::clear() {
    for (auto& level : m_levels)
        level.clear();
    m_loudest = 0;
}

std::uint8_t WaveformPyramid::loudest(double from, double to) const {
    const auto clamped = [&](double peak) {
        return static_cast<std::size_t>(std::clamp(peak, 0.0, static_cast<double>(size())));
    };
    std::size_t first = clamped(std::floor(from * peaksPerSecond));
    std::size_t last = clamped(std::ceil(to * peaksPerSecond));
    std::uint8_t loudest = 0;
    const auto take = [&](const std::vector<std::uint8_t>& level, std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            loudest = std::max(loudest, level[i]);
    };
    // From level to level, taking the peaks at either end that do not fill a parent.
    for (std::size_t level = 0; first < last; ++level) {
        const std::size_t firstWhole = (first + childrenOfPeak - 1) / childrenOfPeak;
        const std::size_t lastWhole = last / childrenOfPeak;
        if (level + 1 == levelCount || firstWhole >= lastWhole) {
            take(m_levels[level], first, last);
            break;
        }
        take(m_levels[level], first, firstWhole * childrenOfPeak);
        take(m_levels[level], lastWhole * childrenOfPeak, last);
        first = firstWhole;
        last = lastWhole;
    }
    return loudest;
}

WaveformStore::WaveformStore(const QString& cacheRoot)
    : m_cacheRoot(cacheRoot) {}

void WaveformStore::open(const media::Recording& recording) {
    close();
    m_hasSound = true;
    const auto work = [this, recording, root = m_cacheRoot](BackgroundWorker::Link link) {
        try {
            SoundReading(root, recording).run(link, [&](const SoundPiece& piece) {
                link.post([this, piece] { take(piece); });
            });
        } catch (const std::exception&) {
            // damaged after this time: what was read before it stays
        }
        link.post([this] { finish(); });
    };
    m_worker.start(work, BackgroundWorker::Priority::low);
}

void WaveformStore::close() {
    m_worker.cancel();
    m_peaks.clear();
    m_moments.clear();
    m_rallyEnds.clear();
    m_hasSound = false;
    Q_EMIT changed();
}

void WaveformStore::take(const SoundPiece& piece) {
    m_peaks.append({reinterpret_cast<const std::uint8_t*>(piece.peaks.constData()),
                    static_cast<std::size_t>(piece.peaks.size())});
    m_moments.insert(m_moments.end(), piece.moments.begin(), piece.moments.end());
    m_rallyEnds = media::rallyEnds(m_moments, false);
    Q_EMIT changed();
}

void WaveformStore::finish() {
    m_rallyEnds = media::rallyEnds(m_moments, true);
    m_hasSound = m_peaks.size() > 0;
    Q_EMIT changed();
}

}
