#include "ui/export/ExportFacts.h"

#include "media/MediaError.h"
#include "media/MediaInfo.h"

#include <QFileInfo>
#include <QStorageInfo>

namespace pointloom {

namespace {

std::optional<SourceRate> rateOf(const QString& path) {
    try {
        const media::MediaInfo info = media::readMediaInfo(path);
        if (!info.video || info.duration <= 0)
            return std::nullopt;
        return SourceRate{info.video->uprightSize(), info.video->frameRate.value(),
                          static_cast<double>(QFileInfo(path).size()) / info.duration};
    } catch (const media::MediaError&) {
        return std::nullopt; // the frame on show says why
    }
}

std::optional<std::int64_t> freeBytesAt(QString folder) {
    while (!QFileInfo(folder).isDir() && QFileInfo(folder).absolutePath() != folder)
        folder = QFileInfo(folder).absolutePath();
    const QStorageInfo disk(folder);
    if (!disk.isValid() || !disk.isReady())
        return std::nullopt;
    return disk.bytesAvailable();
}

}

ExportFacts gatherFacts(const QString& videoPath, const QString& outputPath) {
    const QString folder = QFileInfo(outputPath).absolutePath();
    return {rateOf(videoPath), QFileInfo(folder).isDir(), freeBytesAt(folder)};
}

}
