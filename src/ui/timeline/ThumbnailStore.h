// The small pictures of a clip, made in the background as they are wanted.
#pragma once

#include "ui/timeline/IdleWorker.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <QCache>
#include <QImage>
#include <QObject>
#include <QSize>
#include <vector>

namespace pointloom {

/// Pictures are counted in thumbnail slots (ui/timeline/ThumbnailGrid.h) and show the key frame before their
/// moment, upright and in SDR. Where nothing can be decoded there is none. Belongs to the main thread.
class ThumbnailStore : public QObject {
    Q_OBJECT

public:
    static constexpr QSize largestPicture{240, 128}; // pixels

    /// Keeps what it makes below `cacheRoot`.
    explicit ThumbnailStore(const QString& cacheRoot, QThread::Priority priority = QThread::IdlePriority);
    ~ThumbnailStore() override;

    /// Forgets the clip before. Returns at once.
    void open(const QString& path);
    void close();

    /// Null while it is not there.
    QImage picture(std::int64_t slot);

    /// What is to be made, first things first, in place of what was wanted before.
    void want(const std::vector<std::int64_t>& slots_);

Q_SIGNALS:
    void changed();

private:
    struct Wishes;

    void take(std::int64_t slot, const QImage& picture);

    QString m_cacheRoot;
    QThread::Priority m_priority;
    QCache<std::int64_t, QImage> m_pictures; // null pictures are those that cannot be made
    std::shared_ptr<Wishes> m_wishes;
    std::optional<IdleWorker> m_worker;
};

}
