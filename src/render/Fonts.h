// The typefaces of the scoreboards. They are loaded by file, so that the desktop's font settings cannot
// change what a scoreboard looks like.
#pragma once

#include <QFont>
#include <QStringList>

namespace pointloom {

enum class FontFace { regular, bold };

/// A face at a size in template units; any fraction is kept exactly.
struct TextFont {
    FontFace face = FontFace::regular;
    double size = 0;
};

namespace Fonts {

/// Nimbus Sans, else Liberation Sans, else the desktop's sans-serif; flags from Noto Color Emoji. The pixel
/// size is for measuring and shaping. Safe on any thread once a QGuiApplication exists.
QFont shapingFont(FontFace face, int pixelSize);

/// The typefaces that were not found, by the names of their packages' fonts; empty when nothing is missing.
/// Scoreboards are drawn without them too, but look different.
QStringList missing();

/// Whether flags can be drawn; without them the two letters of the country stand in their place.
bool hasFlags();

}

}
