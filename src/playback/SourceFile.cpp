#include "playback/SourceFile.h"

#include "media/LightMapping.h"

#include <algorithm>
#include <filesystem>
#include <mpv/client.h>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>

namespace pointloom::playback {

using media::MediaFault;
using media::Primaries;
using media::Transfer;

namespace {

Transfer transferNamed(const QByteArray& name) {
    if (name == "pq")
        return Transfer::pq;
    return name == "hlg" ? Transfer::hlg : Transfer::sdr;
}

Primaries primariesNamed(const QByteArray& name, Primaries otherwise) {
    if (name == "bt.2020")
        return Primaries::bt2020;
    if (name == "display-p3" || name == "dci-p3")
        return Primaries::displayP3;
    return name == "bt.709" ? Primaries::bt709 : otherwise;
}

}

std::optional<PlaybackFault> faultOfFile(const QString& path) {
    const std::filesystem::path file(QFile::encodeName(path).toStdString());
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status))
        return PlaybackFault{MediaFault::missing, QStringLiteral("there is no such file")};
    if (!std::filesystem::is_regular_file(status))
        return PlaybackFault{MediaFault::notAFile, QStringLiteral("it is not a file")};
    if (std::filesystem::file_size(file, error) == 0)
        return PlaybackFault{MediaFault::empty, QStringLiteral("it is empty")};
    if (QFile readable(path); !readable.open(QIODevice::ReadOnly)) {
        const bool isAllowed = QFileInfo(path).isReadable(); // QFile does not say
        return PlaybackFault{isAllowed ? MediaFault::other : MediaFault::noPermission,
                             readable.errorString()};
    }
    return std::nullopt;
}

PlaybackFault faultOfPlayer(int error) {
    switch (error) {
    case MPV_ERROR_UNKNOWN_FORMAT:
        return {MediaFault::notAVideo, QStringLiteral("it is not an MP4 or MOV file, or it is damaged")};
    case MPV_ERROR_LOADING_FAILED:
        return {MediaFault::other, QStringLiteral("it cannot be read")};
    case MPV_ERROR_NOTHING_TO_PLAY:
        return {MediaFault::noPicture, QStringLiteral("it holds no picture that can be played")};
    case MPV_ERROR_VO_INIT_FAILED:
        return {MediaFault::other, QStringLiteral("its picture cannot be drawn")};
    default:
        return {MediaFault::other, QString::fromUtf8(mpv_error_string(error))};
    }
}

SourceWatch::SourceWatch(std::function<void(const QString&, media::MediaFault)> lost)
    : m_lost(std::move(lost)) {
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_watcher, [this] { check(); });
}

void SourceWatch::start(const media::Recording& recording) {
    stop();
    for (const QString& path : recording.files()) {
        if (const auto identity = identify(path))
            m_identities[path] = *identity;
        m_watcher.addPath(path);
    }
}

void SourceWatch::stop() {
    if (!m_watcher.files().isEmpty())
        m_watcher.removePaths(m_watcher.files());
    m_identities.clear();
}

void SourceWatch::check() {
    const auto identities = m_identities; // stopping forgets them
    for (const auto& [path, identity] : identities) {
        const std::optional<Identity> now = identify(path);
        // A new date or new permissions change nothing that is played.
        if (now == identity)
            continue;
        stop();
        m_lost(path, now ? media::MediaFault::replaced : media::MediaFault::missing);
        return;
    }
}

std::optional<SourceWatch::Identity> SourceWatch::identify(const QString& path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return Identity{status.st_dev, status.st_ino, status.st_size};
}

std::optional<SourceLight> sourceLightOf(const QByteArray& transfer, const QByteArray& primaries,
                                         double peak) {
    using namespace media::ToneLevels;
    SourceLight light;
    light.transfer = transferNamed(transfer);
    const bool isHdr = light.transfer != Transfer::sdr;
    light.primaries = primariesNamed(primaries, isHdr ? Primaries::bt2020 : Primaries::bt709);
    if (!isHdr)
        return light.primaries == Primaries::bt709 ? std::nullopt : std::optional(light);
    // libmpv assumes the limit of SMPTE ST 2084 when the file names no peak.
    constexpr double highest = 9'999; // cd/m2
    light.peak = peak > 1 && peak * referenceWhite < highest ? peak * referenceWhite : usualPeak;
    return light;
}

}
