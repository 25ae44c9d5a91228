#include "media/EncoderProbe.h"

#include "media/FFmpeg.h"
#include "media/FrameEncoder.h"

#include <algorithm>
#include <cmath>
#include <link.h>
#include <QFileInfo>
#include <QStringList>

namespace pointloom::media {

namespace {

int encodeBlack(const VideoSettings& settings) {
    constexpr int frames = 3;
    FrameEncoder encoder(settings, true);
    const VideoFrame black =
        makeBlackFrame(settings.size.width(), settings.size.height(), settings.format, settings.timeBase);
    const double ticks = 1 / (settings.frameRate.value() * settings.timeBase.value());
    int packets = 0;
    for (int i = 0; i <= frames; ++i) {
        if (i < frames)
            encoder.send(black, i * std::max<std::int64_t>(1, std::llround(ticks)));
        else
            encoder.finish();
        while (encoder.next() != nullptr)
            ++packets;
    }
    return packets;
}

}

std::optional<QString> encoderFault(const VideoSettings& settings) {
    prepareFFmpeg();
    try {
        if (encodeBlack(settings) > 0)
            return std::nullopt;
        return QStringLiteral("it gave no pictures");
    } catch (const MediaError& error) {
        return QString::fromUtf8(error.what());
    }
}

QString ffmpegVersion() {
    return QString::fromUtf8(av_version_info());
}

namespace {

// The names of shared libraries end with the version of their interface, which for x264 and x265 is that of
// the encoder: "libx264.so.164".
int addEncoder(dl_phdr_info* library, std::size_t, void* names) {
    const QString name = QFileInfo(QString::fromUtf8(library->dlpi_name)).fileName();
    if (name.startsWith(QStringLiteral("libx26")))
        *static_cast<QStringList*>(names) += name;
    return 0;
}

}

QString encodingLibraries() {
    QStringList names;
    dl_iterate_phdr(addEncoder, &names);
    names.sort();
    return (QStringList{ffmpegVersion()} + names).join(u' ');
}

}
