// Clips whose frames carry their number, so that a test can tell from a picture which frame it shows.
#pragma once

#include <QImage>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace pointloom::playback {

struct ClipOptions {
    QString rate = QStringLiteral("25"); // frames a second
    int frames = 50;
    QString size = QStringLiteral("320x64");
    int keyFrameEvery = 25;
    bool sound = false;
    QStringList more = {}; // further arguments for the output
};

/// Makes a clip with the ffmpeg tool; frames carry their number in eight vertical bars, lowest bit first.
/// Throws when the tool fails.
QString makeNumberedClip(const QTemporaryDir& folder, const QString& name, const ClipOptions& options = {});

/// Runs the ffmpeg tool. Throws with what it printed when it fails.
void runFfmpeg(const QStringList& arguments);

/// The number in a picture that shows a numbered clip from edge to edge.
int frameNumberIn(const QImage& picture);

}
