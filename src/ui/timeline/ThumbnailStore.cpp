#include "ui/timeline/ThumbnailStore.h"

#include "ui/timeline/ClipCache.h"
#include "ui/timeline/ThumbnailDecoder.h"
#include "ui/timeline/ThumbnailGrid.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <QBuffer>

namespace pointloom {

namespace {

constexpr qsizetype memoryLimit = 48 << 10; // KiB
constexpr qint64 largestFile = 256 << 10;   // bytes of one picture on disk
constexpr int fileQuality = 82;

QString fileNameOf(std::int64_t slot) {
    return QStringLiteral("%1.jpg").arg(slot);
}

QImage readCached(const ClipCache& cache, std::int64_t slot) {
    const auto content = cache.read(fileNameOf(slot), largestFile);
    if (!content)
        return {};
    const QImage picture = QImage::fromData(*content, "JPG");
    const bool isOurs = picture.width() <= ThumbnailStore::largestPicture.width() &&
                        picture.height() <= ThumbnailStore::largestPicture.height();
    return isOurs ? picture.convertToFormat(QImage::Format_RGB32) : QImage();
}

void writeCached(ClipCache& cache, std::int64_t slot, const QImage& picture) {
    QByteArray content;
    QBuffer buffer(&content);
    if (picture.save(&buffer, "JPG", fileQuality))
        cache.write(fileNameOf(slot), content);
}

}

/// What the main thread wants and the worker has not made yet.
struct ThumbnailStore::Wishes {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::int64_t> slots_;
    bool isClosed = false;

    std::optional<std::int64_t> next() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return isClosed || !slots_.empty(); });
        if (isClosed)
            return std::nullopt;
        const std::int64_t slot = slots_.front();
        slots_.pop_front();
        return slot;
    }

    void replace(const std::vector<std::int64_t>& wanted) {
        const std::scoped_lock lock(mutex);
        slots_.assign(wanted.begin(), wanted.end());
        changed.notify_one();
    }

    void close() {
        const std::scoped_lock lock(mutex);
        isClosed = true;
        changed.notify_one();
    }
};

ThumbnailStore::ThumbnailStore(const QString& cacheRoot, QThread::Priority priority)
    : m_cacheRoot(cacheRoot)
    , m_priority(priority)
    , m_pictures(memoryLimit) {}

ThumbnailStore::~ThumbnailStore() {
    close();
}

void ThumbnailStore::open(const QString& path) {
    close();
    m_wishes = std::make_shared<Wishes>();
    const auto work = [this, path, root = m_cacheRoot, wishes = m_wishes](IdleWorker::Link link) {
        ClipCache cache(root, path);
        ThumbnailDecoder decoder(path, largestPicture);
        while (const auto slot = wishes->next()) {
            QImage picture = readCached(cache, *slot);
            if (picture.isNull()) {
                picture = decoder.pictureAt(static_cast<double>(*slot) / thumbnailSlotsPerSecond);
                if (!picture.isNull())
                    writeCached(cache, *slot, picture);
            }
            // The store is there as long as the work is not cancelled.
            link.post([this, slot = *slot, picture] { take(slot, picture); });
        }
    };
    m_worker.emplace(work, m_priority);
}

void ThumbnailStore::close() {
    m_worker.reset();
    if (m_wishes)
        m_wishes->close();
    m_wishes.reset();
    m_pictures.clear();
}

QImage ThumbnailStore::picture(std::int64_t slot) {
    const QImage* known = m_pictures.object(slot);
    return known ? *known : QImage();
}

void ThumbnailStore::want(const std::vector<std::int64_t>& slots_) {
    if (!m_wishes)
        return;
    std::vector<std::int64_t> missing;
    std::ranges::copy_if(slots_, std::back_inserter(missing),
                         [&](std::int64_t slot) { return !m_pictures.contains(slot); });
    m_wishes->replace(missing);
}

void ThumbnailStore::take(std::int64_t slot, const QImage& picture) {
    const qsizetype cost = picture.sizeInBytes() / 1024 + 1;
    m_pictures.insert(slot, new QImage(picture), cost); // the cache owns it
    Q_EMIT changed();
}

}
