// Notices that an open file was deleted, moved, replaced or changed in length.
#pragma once

#include "media/MediaError.h"

#include <optional>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <sys/types.h>

namespace pointloom::playback {

class SourceWatch : public QObject {
    Q_OBJECT

public:
    explicit SourceWatch(QObject* parent = nullptr);

    /// Watches the file at `path` from now on, and no other.
    void start(const QString& path);
    void stop();

Q_SIGNALS:
    /// Once for a file: `missing` when it was deleted or moved, `replaced` otherwise.
    void lost(pointloom::media::MediaFault fault);

private:
    struct Identity {
        dev_t device;
        ino_t inode;
        off_t length; // bytes

        bool operator==(const Identity&) const = default;
    };

    static std::optional<Identity> identify(const QString& path);
    void check();

    QFileSystemWatcher m_watcher;
    QString m_path;
    std::optional<Identity> m_identity;
};

}
