// One list of texts for each language, each in a file of its own, in the order of the keys.
#pragma once

#include "l10n/L10nKey.h"

#include <QStringView>
#include <span>

namespace pointloom {

struct Text {
    L10nKey key;
    QStringView text;
};

using TextList = std::span<const Text>;

namespace texts {

TextList english();
TextList french();
TextList spanish();
TextList italian();
TextList german();
TextList swedish();
TextList portuguese();

}

}
