// The look of a board: the style of its template with the board's colours and choices, the colours that it
// leaves out derived from the others.
#pragma once

#include "render/RowTemplate.h"

namespace pointloom {

/// The style by which the template draws with that board. `id` is one of which a board can be made. A main
/// colour brings its shades and, where the template's text would be hard to read, black or white text.
RowTemplateStyle styleOf(TemplateID id, const BoardStyle& board);

/// Ratios of contrast, 1..21, by WCAG 2.1; of a translucent ground over the worse of black and white.
struct BoardContrast {
    double names = 0; // and sets, in the row where it is less
    double points = 0;
};

BoardContrast contrastOf(const RowTemplateStyle& style);

/// WCAG 2.1, level AA.
constexpr double readableContrast = 4.5;

}
