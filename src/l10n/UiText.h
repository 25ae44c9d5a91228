// Texts of single screens, in all seven languages on one row each; what many screens share has a key.
#pragma once

#include "l10n/Language.h"

#include <QString>

namespace pointloom {

/// One text in every language, in the order of `Language`. Declared as constants beside their screen:
///
///     constexpr UiText volume{"Volume", "Volume", "Volumen", "Volume", "Lautstärke", "Volym", "Volume"};
struct UiText {
    const char* english;
    const char* french;
    const char* spanish;
    const char* italian;
    const char* german;
    const char* swedish;
    const char* portuguese;
};

QString t(Language language, const UiText& text);

}
