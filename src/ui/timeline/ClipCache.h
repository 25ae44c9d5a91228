// A disk cache of files made from clips.
#pragma once

#include "media/Recording.h"

#include <optional>
#include <QByteArray>
#include <QString>

namespace pointloom {

/// A folder of small files for one version of a clip: path, size and time of change of its files. Failures
/// are silent: every file can be made again. Each thread uses an object of its own.
class ClipCache {
public:
    static constexpr qint64 largestCache = 256LL << 20; // bytes, all clips together
    static constexpr qint64 largestClip = 48LL << 20;   // bytes that one object writes, at most

    /// `root` contains the folders of all clips. Those used longest ago are removed when all take more than
    /// `limit` bytes.
    ClipCache(const QString& root, const media::Recording& clip, qint64 limit = largestCache);

    /// In the user's cache folder.
    static QString standardRoot();

    /// None when the file is missing or larger than `largest` bytes.
    std::optional<QByteArray> read(const QString& name, qint64 largest) const;
    void write(const QString& name, const QByteArray& content);

private:
    void forgetOldest(const QString& root, qint64 limit) const;

    QString m_folder; // empty when the clip is not a file
    qint64 m_written = 0;
};

}
