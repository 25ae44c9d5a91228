// The file that is played: why it cannot be, whether another program changes it, and what light it holds.
#pragma once

#include "media/Recording.h"

#include <functional>
#include <map>
#include <optional>
#include <QByteArray>
#include <QFileSystemWatcher>
#include <QString>
#include <sys/types.h>

namespace pointloom::playback {

struct PlaybackFault {
    media::MediaFault kind = media::MediaFault::other;
    QString reason; // the end of a sentence whose subject is the file
};

/// The reason why the file cannot be opened, as far as that shows without reading it; empty when it may.
/// Anything but a regular file could make the player wait for ever.
std::optional<PlaybackFault> faultOfFile(const QString& path);

/// The fault of the file that libmpv was to open, from its error code.
PlaybackFault faultOfPlayer(int error);

/// Notices that an open file was deleted, moved, replaced or changed in length.
class SourceWatch {
public:
    /// `lost` is called once, from the event loop, with the path of the file: `missing` when it was deleted
    /// or moved, `replaced` otherwise.
    explicit SourceWatch(std::function<void(const QString&, media::MediaFault)> lost);

    /// Watches the files of the recording from now on, and no others.
    void start(const media::Recording& recording);
    void stop();

private:
    struct Identity {
        dev_t device;
        ino_t inode;
        off_t length; // bytes

        bool operator==(const Identity&) const = default;
    };

    static std::optional<Identity> identify(const QString& path);
    void check();

    std::function<void(const QString&, media::MediaFault)> m_lost;
    QFileSystemWatcher m_watcher;
    std::map<QString, Identity> m_identities;
};

/// Light or colours that a screen cannot show as they are: HDR, or a wide gamut.
struct SourceLight {
    media::Transfer transfer = media::Transfer::sdr;
    media::Primaries primaries = media::Primaries::bt2020;
    double peak = 0; // brightest light of HDR, cd/m2

    bool operator==(const SourceLight&) const = default;
};

/// From libmpv's names and `peak` in units of SDR white; empty for light that a screen shows as it is.
std::optional<SourceLight> sourceLightOf(const QByteArray& transfer, const QByteArray& primaries,
                                         double peak);

}
