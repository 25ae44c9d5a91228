// The fonts of text that controls paint themselves, made from the one they were given.
#pragma once

#include <QFont>

namespace pointloom {

QFont strongFont(QFont font);

/// Smaller; one that is sized in pixels stays as it is.
QFont quietFont(QFont font);

}
