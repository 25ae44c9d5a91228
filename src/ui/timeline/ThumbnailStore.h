// The thumbnails of a clip, made in the background on request.
#pragma once

#include "media/Recording.h"
#include "ui/common/BackgroundTask.h"

#include <cstdint>
#include <memory>
#include <QCache>
#include <QImage>
#include <QObject>
#include <QSize>
#include <vector>

namespace pointloom {

/// Used on the main thread. Thumbnails are numbered by slot (`thumbnailSlotsPerSecond`) and show the key
/// frame before their time, upright and in SDR. Where nothing can be decoded there is none.
class ThumbnailStore : public QObject {
    Q_OBJECT

public:
    static constexpr QSize largestImage{240, 128}; // pixels

    /// Thumbnails are cached on disk below `cacheRoot`.
    explicit ThumbnailStore(const QString& cacheRoot);
    ~ThumbnailStore() override;

    /// Replaces the clip. Returns at once.
    void open(const media::Recording& recording);
    void close();

    /// Null when it does not exist yet.
    QImage image(std::int64_t slot);

    /// Replaces the slots that were wanted before by others, the most urgent first.
    void want(const std::vector<std::int64_t>& wanted);

    /// Slots that are made and cached on disk when none is wanted.
    void keep(const std::vector<std::int64_t>& slots);

Q_SIGNALS:
    void changed();

private:
    struct Queue;

    void take(std::int64_t slot, const QImage& image);

    QString m_cacheRoot;
    QCache<std::int64_t, QImage> m_images; // null images are those that cannot be made
    std::shared_ptr<Queue> m_queue;
    BackgroundWorker m_worker;
};

}
