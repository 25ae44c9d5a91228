#include "playback/PlaybackFault.h"

#include <filesystem>
#include <mpv/client.h>
#include <QFile>
#include <QFileInfo>

namespace pointloom::playback {

using media::MediaFault;

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
        const bool isAllowed = QFileInfo(path).isReadable(); // the file itself does not tell
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

}
