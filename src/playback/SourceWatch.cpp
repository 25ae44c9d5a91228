#include "playback/SourceWatch.h"

#include <QFile>
#include <sys/stat.h>

namespace pointloom::playback {

SourceWatch::SourceWatch(QObject* parent)
    : QObject(parent) {
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &SourceWatch::check);
}

void SourceWatch::start(const QString& path) {
    stop();
    m_path = path;
    m_identity = identify(path);
    m_watcher.addPath(path);
}

void SourceWatch::stop() {
    if (!m_watcher.files().isEmpty())
        m_watcher.removePaths(m_watcher.files());
    m_identity.reset();
}

void SourceWatch::check() {
    if (!m_identity)
        return;
    const std::optional<Identity> now = identify(m_path);
    // A new date or new permissions change nothing that is played.
    if (now == m_identity)
        return;
    stop();
    Q_EMIT lost(now ? media::MediaFault::replaced : media::MediaFault::missing);
}

std::optional<SourceWatch::Identity> SourceWatch::identify(const QString& path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return Identity{status.st_dev, status.st_ino, status.st_size};
}

}
