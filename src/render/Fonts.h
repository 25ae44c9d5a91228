// The typefaces of the scoreboards. They are loaded by file, so that the desktop's font settings do not
// change the look of a scoreboard.
#pragma once

#include "model/BoardStyle.h"

#include <QFont>
#include <QStringList>

namespace pointloom {

enum class FontFace { regular, bold };

/// A face at a size in template units, which may be a fraction.
struct TextFont {
    FontFace face = FontFace::regular;
    double size = 0;
    BoardFont family = BoardFont::sans;
};

namespace Fonts {

/// Nimbus Sans, else Liberation Sans, else the desktop's sans-serif; flags from Noto Color Emoji. The other
/// families of boards come in one package with Nimbus Sans: Nimbus Sans Narrow, URW Gothic, C059; one that is
/// missing is replaced by the first. The pixel size is for measuring and shaping. Safe on any thread once a
/// QGuiApplication exists.
QFont shapingFont(FontFace face, int pixelSize, BoardFont family = BoardFont::sans);

/// Families that were not found; empty when none is missing. Scoreboards are drawn without them too, but look
/// different.
QStringList missing();

/// Whether flags can be drawn; without them the two letters of the country are drawn instead.
bool hasFlags();

}

}
