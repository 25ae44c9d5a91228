#include "ui/timeline/WaveformStore.h"

#include "media/AudioReader.h"
#include "ui/timeline/ClipCache.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <QElapsedTimer>

namespace pointloom {

namespace {

constexpr auto cacheName = "waveform-1";       // the number changes with the meaning of the peaks
constexpr qint64 largestWaveform = 32LL << 20; // bytes; more than a day
constexpr qint64 tellAfter = 150;              // milliseconds between two deliveries of peaks
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

void readSound(const QString& path, ClipCache& cache, BackgroundWorker::Link link,
               const std::function<void(QByteArray)>& tell) {
    auto reader = media::AudioReader::open(path, 0, std::nullopt);
    if (!reader)
        return;
    PeakCounter counter;
    QByteArray all;
    qsizetype told = 0;
    QElapsedTimer sinceTold;
    sinceTold.start();
    while (!link.isCancelled() && all.size() < largestWaveform) {
        const auto sound = reader->read();
        if (!sound)
            break;
        counter.add(*sound, all);
        if (sinceTold.elapsed() >= tellAfter) {
            tell(all.mid(told));
            told = all.size();
            sinceTold.restart();
        }
    }
    if (link.isCancelled())
        return;
    tell(all.mid(told));
    cache.write(QLatin1String(cacheName), all);
}

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

void WaveformStore::open(const QString& path) {
    close();
    m_hasSound = true;
    const auto work = [this, path, root = m_cacheRoot](BackgroundWorker::Link link) {
        const auto tell = [&](const QByteArray& peaks) { link.post([this, peaks] { take(peaks); }); };
        ClipCache cache(root, path);
        if (const auto known = cache.read(QLatin1String(cacheName), largestWaveform)) {
            tell(*known);
        } else {
            try {
                readSound(path, cache, link, tell);
            } catch (const std::exception&) {
                // damaged after this time: the peaks before it stay
            }
        }
        link.post([this] { finish(); });
    };
    m_worker.start(work, BackgroundWorker::Priority::low);
}

void WaveformStore::close() {
    m_worker.cancel();
    m_peaks.clear();
    m_hasSound = false;
    Q_EMIT changed();
}

void WaveformStore::take(const QByteArray& peaks) {
    m_peaks.append(
        {reinterpret_cast<const std::uint8_t*>(peaks.constData()), static_cast<std::size_t>(peaks.size())});
    Q_EMIT changed();
}

void WaveformStore::finish() {
    m_hasSound = m_peaks.size() > 0;
    Q_EMIT changed();
}

}
