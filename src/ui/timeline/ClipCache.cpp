#include "ui/timeline/ClipCache.h"

#include <algorithm>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStandardPaths>
#include <vector>

namespace pointloom {

namespace {

constexpr auto useMark = "used"; // a file whose time of change is that of the last use

QString keyOf(const media::Recording& clip) {
    QString state;
    for (const QString& path : clip.files()) {
        const QFileInfo file(path);
        state += QStringLiteral("%1|%2|%3")
                     .arg(file.absoluteFilePath())
                     .arg(file.size())
                     .arg(file.lastModified().toMSecsSinceEpoch());
    }
    return QString::fromLatin1(
        QCryptographicHash::hash(state.toUtf8(), QCryptographicHash::Sha256).toHex().left(32));
}

struct CachedClip {
    QString folder;
    QDateTime used;
    qint64 bytes = 0;
};

CachedClip measure(const QFileInfo& folder) {
    CachedClip clip{folder.absoluteFilePath(),
                    QFileInfo(folder.absoluteFilePath(), QLatin1String(useMark)).lastModified()};
    QDirIterator files(clip.folder, QDir::Files);
    while (files.hasNext()) {
        files.next();
        clip.bytes += files.fileInfo().size();
    }
    return clip;
}

}

ClipCache::ClipCache(const QString& root, const media::Recording& clip, qint64 limit) {
    if (!QFileInfo(clip.first()).isFile())
        return;
    const QString folder = QDir(root).filePath(keyOf(clip));
    if (!QDir().mkpath(folder))
        return;
    m_folder = folder;
    write(QLatin1String(useMark), {});
    forgetOldest(root, limit);
}

QString ClipCache::standardRoot() {
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QStringLiteral("/timeline");
}

std::optional<QByteArray> ClipCache::read(const QString& name, qint64 largest) const {
    if (m_folder.isEmpty())
        return std::nullopt;
    QFile file(QDir(m_folder).filePath(name));
    if (!file.open(QIODevice::ReadOnly) || file.size() > largest)
        return std::nullopt;
    return file.read(largest);
}

void ClipCache::write(const QString& name, const QByteArray& content) {
    if (m_folder.isEmpty() || m_written + content.size() > largestClip)
        return;
    m_written += content.size();
    // Written to a temporary name, then renamed, so that readers never find half a file.
    const QString path = QDir(m_folder).filePath(name);
    const QString unfinished = path + QStringLiteral(".part");
    QFile file(unfinished);
    const bool isWhole =
        file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    file.close();
    QFile::remove(path);
    if (!isWhole || !QFile::rename(unfinished, path))
        QFile::remove(unfinished);
}

void ClipCache::forgetOldest(const QString& root, qint64 limit) const {
    std::vector<CachedClip> clips;
    qint64 total = 0;
    for (const QFileInfo& folder :
         QDir(root).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks)) {
        clips.push_back(measure(folder));
        total += clips.back().bytes;
    }
    std::ranges::sort(clips, {}, &CachedClip::used);
    for (const CachedClip& clip : clips) {
        if (total <= limit)
            return;
        if (clip.folder == m_folder)
            continue;
        QDir(clip.folder).removeRecursively();
        total -= clip.bytes;
    }
}

}
