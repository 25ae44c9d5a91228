#include "ui/style/TextFonts.h"

#include "ui/style/Tokens.h"

namespace pointloom {

QFont strongFont(QFont font) {
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont quietFont(QFont font) {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * TypeScale::quiet);
    return font;
}

}
