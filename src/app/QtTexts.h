// Qt's own texts, those of file dialogs and context menus, in the session's language.
#pragma once

#include "ui/style/Bindings.h"

#include <QTranslator>

namespace pointloom {

class AppState;

/// Follows the language of `state`, which outlives it. The texts stay English where Qt's translations are not
/// installed.
class QtTexts {
public:
    explicit QtTexts(AppState& state);

private:
    QTranslator m_translator; // leaves the application when it is destroyed
    Bindings m_bindings;
};

}
