#include "ui/timeline/WaveformStore.h"

#include "media/AudioReader.h"
#include "ui/timeline/ClipCache.h"
#include "ui/timeline/PeakCounter.h"

#include <exception>
#include <QElapsedTimer>

namespace pointloom {

namespace {

constexpr auto cacheName = "waveform-1";       // the number changes with the meaning of the peaks
constexpr qint64 largestWaveform = 32LL << 20; // bytes; more than a day
constexpr qint64 tellAfter = 150;              // milliseconds between two looks at what has been read

void readSound(const QString& path, ClipCache& cache, IdleWorker::Link link,
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

WaveformStore::WaveformStore(const QString& cacheRoot, QThread::Priority priority)
    : m_cacheRoot(cacheRoot)
    , m_priority(priority) {}

void WaveformStore::open(const QString& path) {
    close();
    m_hasSound = true;
    const auto work = [this, path, root = m_cacheRoot](IdleWorker::Link link) {
        // The store is there as long as the work is not cancelled.
        const auto tell = [&](const QByteArray& peaks) { link.post([this, peaks] { take(peaks); }); };
        ClipCache cache(root, path);
        if (const auto known = cache.read(QLatin1String(cacheName), largestWaveform)) {
            tell(*known);
        } else {
            try {
                readSound(path, cache, link, tell);
            } catch (const std::exception&) {
                // Damaged from here on: what has been read stays.
            }
        }
        link.post([this] { finish(); });
    };
    m_worker.emplace(work, m_priority);
}

void WaveformStore::close() {
    m_worker.reset();
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
