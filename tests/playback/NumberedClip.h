// Clips whose frames carry their number, so that a test can tell from a picture which frame it shows.
#pragma once

#include "support/TestClips.h"

#include <QImage>
#include <QString>
#include <QStringList>

namespace pointloom::playback {

constexpr double frame = 1.0 / 25; // seconds, unless the options say otherwise

struct ClipOptions {
    QString rate = QStringLiteral("25"); // frames a second
    int frames = 50;
    QString size = QStringLiteral("320x64");
    int keyFrameEvery = 25;
    bool sound = false;
    QStringList more = {}; // further arguments for the output
};

/// Twelve frames, each shown for a different time, and one whose time depends on FFmpeg's version.
ClipOptions variableRate();
/// The start of one of them, seconds.
constexpr double variableRateTime(int number) {
    return number * (number + 3) / 100.0;
}

/// Frames carry their number in eight vertical bars, lowest bit first, white for one.
QString makeNumberedClip(const test::ClipFolder& folder, const QString& name,
                         const ClipOptions& options = {});

/// The number in a picture that shows a numbered clip from edge to edge.
int frameNumberIn(const QImage& picture);

}
