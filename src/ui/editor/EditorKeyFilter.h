// Handles the keys of the editor's commands, whichever of its parts has the focus.
#pragma once

#include "ui/common/Commands.h"

#include <functional>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

namespace pointloom {

/// A text field keeps all of its keys, and every other control those that it works with itself: a button
/// reached by Tab its Space, a slider and the marker list their arrows, and whatever accepts the key's
/// ShortcutOverride event.
class EditorKeyFilter : public QObject {
public:
    using Actions = std::map<Command, std::function<void()>>;

    /// Keys of commands without an action are left to the widgets. A held key repeats the commands that say
    /// so. `keys` outlives the editor.
    EditorKeyFilter(QWidget& editor, const CommandKeys& keys, Actions actions);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool concernsEditor(const QWidget& receiver) const;

    QPointer<QWidget> m_editor;
    const CommandKeys& m_keys;
    Actions m_actions;
};

}
