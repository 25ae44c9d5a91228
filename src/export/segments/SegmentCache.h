// Encoded segments, kept for the next export that has the same ones.
#pragma once

#include "media/MediaInfo.h"

#include <optional>
#include <QDateTime>
#include <QString>

namespace pointloom {

/// A folder of parts, segments and sound, named by their keys. Those used longest ago are removed first: when
/// all take more than the limit, and when the disk has little space. Several threads and processes may use
/// the same folder. Failures are silent: every part can be encoded again.
class SegmentCache {
public:
    static constexpr qint64 usualLimit = 20'000'000'000;  // bytes, all parts together
    static constexpr qint64 usualReserve = 2'000'000'000; // bytes of the disk that are left to others

    /// Makes the folder. Parts beyond the limit are removed.
    explicit SegmentCache(QString folder = standardFolder(), qint64 limit = usualLimit,
                          qint64 reserve = usualReserve);

    /// "Pointloom/segments" in the user's cache folder.
    static QString standardFolder();

    const QString& folder() const { return m_folder; }

    bool contains(const QString& key) const;

    /// Gives the part the further name `path`, in the same file system: it stays whole there when it is
    /// removed here. Returns the source's damage in it; empty when there is no such part. One that is
    /// damaged or has another key is removed.
    std::optional<media::Damage> take(const QString& key, const QString& path) const;

    /// The place of a part that is whole, where it may be read until it is removed; empty when there is none.
    /// One that is damaged or has another key is removed.
    std::optional<QString> find(const QString& key) const;

    /// Removes parts used longest ago until so many bytes more may be kept. False when they may not.
    bool makeRoom(qint64 bytes) const;

    /// Keeps a finished file, which gets a few bytes more at its end, where players read none. Replaces a
    /// part with that key.
    void keep(const QString& key, const QString& path, const media::Damage& damage) const;

    qint64 bytes() const;
    void clear() const;

private:
    QString pathOf(const QString& key) const;

    QString m_folder;
    qint64 m_limit;
    qint64 m_reserve;
    QDateTime m_opened;
};

}
