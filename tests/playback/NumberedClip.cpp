#include "playback/NumberedClip.h"

namespace pointloom::playback {

namespace {

constexpr int bars = 8;

}

ClipOptions variableRate() {
    return {.frames = 13,
            .more = {QStringLiteral("-vf"), QStringLiteral("settb=1/1000,setpts=N*(N+3)*10"),
                     QStringLiteral("-fps_mode"), QStringLiteral("passthrough"),
                     QStringLiteral("-enc_time_base"), QStringLiteral("1/1000")}};
}

QString makeNumberedClip(const test::ClipFolder& folder, const QString& name, const ClipOptions& options) {
    const double seconds = 10000; // the number of frames ends it
    QStringList arguments{
        QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
        QStringLiteral("nullsrc=s=%1:r=%2:d=%3,format=yuv420p,"
                       "geq=lum='if(mod(floor(N/pow(2,floor(X*%4/W))),2),235,16)':cb=128:cr=128")
            .arg(options.size, options.rate)
            .arg(seconds)
            .arg(bars)};
    if (options.sound)
        arguments << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
                  << QStringLiteral("sine=frequency=440") << QStringLiteral("-shortest");
    arguments << QStringLiteral("-frames:v") << QString::number(options.frames) << QStringLiteral("-c:v")
              << QStringLiteral("libx264") << QStringLiteral("-preset") << QStringLiteral("veryfast")
              << QStringLiteral("-bf") << QStringLiteral("3") << QStringLiteral("-g")
              << QString::number(options.keyFrameEvery) << QStringLiteral("-sc_threshold")
              << QStringLiteral("0") << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p");
    return folder.make(name, arguments + options.more);
}

int frameNumberIn(const QImage& picture) {
    constexpr int middle = 128;
    int number = 0;
    for (int bar = 0; bar < bars; ++bar) {
        const int x = (2 * bar + 1) * picture.width() / (2 * bars);
        if (qGray(picture.pixel(x, picture.height() / 2)) > middle)
            number |= 1 << bar;
    }
    return number;
}

}
