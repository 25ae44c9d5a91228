// The commands of the editor and their keys.
#pragma once

#include "ui/common/CommandKeys.h"

#include <functional>
#include <map>
#include <QObject>
#include <QWidget>

namespace pointloom {

/// Handles the keys whichever of the editor's parts has the focus. A text field keeps all of its keys, and
/// every other control those that it works with itself: a button reached by Tab its Space, a slider and the
/// marker list their arrows, and whatever accepts the key's ShortcutOverride event.
class EditorKeys : public QObject {
public:
    using Actions = std::map<Command, std::function<void()>>;

    /// Keys of commands without an action are left to the widgets. A held key repeats the commands that say
    /// so. Lives as long as `editor`, which `keys` outlives.
    EditorKeys(QWidget& editor, const CommandKeys& keys, Actions actions);

    /// Does nothing for a command without an action.
    void run(Command command) const;

    /// Takes the focus from a field into which digits would be typed.
    void endTyping() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool concernsEditor(const QWidget& receiver) const;

    QWidget& m_editor;
    const CommandKeys& m_keys;
    Actions m_actions;
};

}
