#include "ui/timeline/ThumbnailStore.h"

#include "export/UprightImage.h"
#include "media/VideoReader.h"
#include "ui/timeline/ClipCache.h"
#include "ui/timeline/ThumbnailStrip.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <QBuffer>

namespace pointloom {

namespace {

constexpr qsizetype memoryLimit = 48 << 10; // KiB
constexpr qint64 largestFile = 256 << 10;   // bytes
constexpr int fileQuality = 82;

QString fileNameOf(std::int64_t slot) {
    return QStringLiteral("%1.jpg").arg(slot);
}

QImage readCached(const ClipCache& cache, std::int64_t slot) {
    const auto content = cache.read(fileNameOf(slot), largestFile);
    if (!content)
        return {};
    const QImage image = QImage::fromData(*content, "JPG");
    const bool isOurs = image.width() <= ThumbnailStore::largestImage.width() &&
                        image.height() <= ThumbnailStore::largestImage.height();
    return isOurs ? image.convertToFormat(QImage::Format_RGB32) : QImage();
}

void writeCached(ClipCache& cache, std::int64_t slot, const QImage& image) {
    QByteArray content;
    QBuffer buffer(&content);
    if (image.save(&buffer, "JPG", fileQuality))
        cache.write(fileNameOf(slot), content);
}

/// Decodes thumbnails of one clip.
class ThumbnailDecoder {
public:
    explicit ThumbnailDecoder(media::Recording recording)
        : m_recording(std::move(recording)) {}

    /// The key frame near `time` (seconds), upright, in square pixels, fitted into `largestImage`. Null when
    /// the file is gone or cannot be decoded there.
    QImage imageAt(double time) {
        if (m_isUnreadable)
            return {};
        try {
            if (!m_reader)
                m_reader = media::VideoReader::open(m_recording);
        } catch (const std::exception&) {
            m_isUnreadable = true;
            return {};
        }
        try {
            return decode(time);
        } catch (const std::exception&) {
            return {}; // damaged at this time; others may be whole
        }
    }

private:
    QImage decode(double time) {
        m_reader->seekToKeyFrame(time);
        const auto frame = m_reader->read();
        if (!frame)
            return {};
        if (m_latestTime == frame->time())
            return m_latest;
        const media::VideoTrackInfo& track = m_reader->track();
        const QSize size = track.uprightSize().scaled(ThumbnailStore::largestImage, Qt::KeepAspectRatio);
        m_latest = uprightImage(*frame, track.orientation, size);
        m_latestTime = frame->time();
        return m_latest;
    }

    media::Recording m_recording;
    std::optional<media::VideoReader> m_reader; // opened when first needed
    bool m_isUnreadable = false;
    std::optional<double> m_latestTime; // of the frame in `m_latest`: neighbours often share a key frame
    QImage m_latest;
};

}

/// The slots that are not made yet.
struct ThumbnailStore::Queue {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::int64_t> wanted; // to be shown
    std::deque<std::int64_t> kept;   // to be cached, when none is wanted
    bool isClosed = false;

    struct Task {
        std::int64_t slot = 0;
        bool isShown = false;
    };

    std::optional<Task> next() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return isClosed || !wanted.empty() || !kept.empty(); });
        if (isClosed)
            return std::nullopt;
        auto& slots = wanted.empty() ? kept : wanted;
        const Task task{slots.front(), &slots == &wanted};
        slots.pop_front();
        return task;
    }

    void replace(std::deque<std::int64_t> Queue::*slots, const std::vector<std::int64_t>& others) {
        const std::scoped_lock lock(mutex);
        (this->*slots).assign(others.begin(), others.end());
        changed.notify_one();
    }

    void close() {
        const std::scoped_lock lock(mutex);
        isClosed = true;
        changed.notify_one();
    }
};

ThumbnailStore::ThumbnailStore(const QString& cacheRoot)
    : m_cacheRoot(cacheRoot)
    , m_images(memoryLimit) {}

ThumbnailStore::~ThumbnailStore() {
    close();
}

void ThumbnailStore::open(const media::Recording& recording) {
    close();
    m_queue = std::make_shared<Queue>();
    const auto work = [this, recording, root = m_cacheRoot, queue = m_queue](BackgroundWorker::Link link) {
        ClipCache cache(root, recording);
        ThumbnailDecoder decoder(recording);
        while (const auto task = queue->next()) {
            const std::int64_t slot = task->slot;
            if (!task->isShown && cache.read(fileNameOf(slot), largestFile))
                continue;
            QImage image = readCached(cache, slot);
            if (image.isNull()) {
                image = decoder.imageAt(static_cast<double>(slot) / thumbnailSlotsPerSecond);
                if (!image.isNull())
                    writeCached(cache, slot, image);
            }
            if (task->isShown)
                link.post([this, slot, image] { take(slot, image); });
        }
    };
    m_worker.start(work, BackgroundWorker::Priority::low);
}

void ThumbnailStore::close() {
    m_worker.cancel();
    if (m_queue)
        m_queue->close();
    m_queue.reset();
    m_images.clear();
}

QImage ThumbnailStore::image(std::int64_t slot) {
    const QImage* known = m_images.object(slot);
    return known ? *known : QImage();
}

void ThumbnailStore::want(const std::vector<std::int64_t>& wanted) {
    if (!m_queue)
        return;
    std::vector<std::int64_t> missing;
    std::ranges::copy_if(wanted, std::back_inserter(missing),
                         [&](std::int64_t slot) { return !m_images.contains(slot); });
    m_queue->replace(&Queue::wanted, missing);
}

void ThumbnailStore::keep(const std::vector<std::int64_t>& slots) {
    if (m_queue)
        m_queue->replace(&Queue::kept, slots);
}

void ThumbnailStore::take(std::int64_t slot, const QImage& image) {
    const qsizetype cost = image.sizeInBytes() / 1024 + 1;
    m_images.insert(slot, new QImage(image), cost); // the cache owns it
    Q_EMIT changed();
}

}
