// The content of every source of the matrix: patches along the edges of the picture, most of a known colour,
// one that flashes while a beep sounds and one whose grey tells the frames apart.
#pragma once

#include "support/TestClips.h"

#include <array>
#include <QRectF>
#include <QSize>

namespace pointloom::test {

using Rgb = std::array<double, 3>; // signal, 0..255

namespace Pattern {

constexpr QSize size{320, 192};
constexpr int patches = 8;
constexpr int flash = 1;            // the patch that is white in the flash and black else
constexpr int counter = 3;          // the patch that grows brighter with each frame
constexpr double beepLength = 0.25; // seconds

/// Places in the stored picture; fractions from its top left.
QRectF areaOf(int patch);

Rgb colorOf(int patch, int frame, int frames);

/// The flash lasts from this frame for a fifth of the clip.
int flashFrame(int frames);

/// Writes `frames` pictures as rows of red, green, blue, one byte each, once for each number of frames.
/// Returns the file's path.
QString write(const ClipFolder& folder, int frames);

}

}
