// Shared services for screens: session, undo, settings, dialogs, keys.
#pragma once

#include "l10n/Format.h"
#include "l10n/L10nKey.h"
#include "session/AppState.h"
#include "session/UndoStack.h"
#include "ui/common/CommandKeys.h"
#include "ui/common/Dialogs.h"

namespace pointloom {

class UserDefaults;

/// Outlives every screen. Screens hold no state of the session: they watch it (`Bindings`) and call its
/// operations.
struct UiContext {
    AppState& state;
    UndoStack& undo;
    UserDefaults& defaults;
    Dialogs& dialogs;
    CommandKeys& keys;

    /// A text in the session's language and this desktop's words. Readers inside a binding on
    /// `state.language` follow a switch of language.
    QString text(L10nKey key) const { return forThisDesktop(state.t(key), state.language); }

    /// A tool tip: the text with the first key of `command` in brackets. It changes with `keys.chosen()` too.
    QString textWithKey(L10nKey name, Command command) const {
        const auto shown = keys.shown(command);
        return shown.isEmpty()
                   ? text(name)
                   : QStringLiteral("%1 (%2)").arg(text(name), keyLabel(shown.first(), state.language));
    }
};

}
