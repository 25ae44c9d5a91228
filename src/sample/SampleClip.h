// Writes the sample match as a video with sound.
#pragma once

#include <functional>
#include <QSize>
#include <QString>

namespace pointloom::sample {

class Match;

struct ClipOptions {
    QSize size{1280, 720}; // pixels, both even
    double seconds = 20;
    int framesPerSecond = 30;
    bool cameraNoise = false; // a camera held by hand, with a small sensor
};

/// Writes the MP4 file whole or not at all. `goOn` is given the finished fraction after each frame; its false
/// stops, and no file is written. Returns whether there is one. Throws MediaError and FileError.
[[nodiscard]] bool writeClip(const QString& path, const Match& match, const ClipOptions& options,
                             const std::function<bool(double)>& goOn);

}
