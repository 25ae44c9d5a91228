// What has been made of a clip once, kept on disk for the next time.
#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

namespace pointloom {

/// A folder of small files for one state of a clip: its path, length and time of change. Failures are silent,
/// for all of it can be made again. Any thread may use an object of its own.
class ClipCache {
public:
    static constexpr qint64 largestCache = 256LL << 20; // bytes, of all clips together
    static constexpr qint64 largestClip = 48LL << 20;   // bytes that one object writes

    /// `root` holds the folders of all clips. The clips used longest ago are forgotten when they take more
    /// than `limit` bytes.
    ClipCache(const QString& root, const QString& clipPath, qint64 limit = largestCache);

    /// The desktop's folder for such things.
    static QString standardRoot();

    std::optional<QByteArray> read(const QString& name, qint64 largest) const;
    void write(const QString& name, const QByteArray& content);

private:
    void forgetOldest(const QString& root, qint64 limit) const;

    QString m_folder; // empty when the clip is not there
    qint64 m_written = 0;
};

}
