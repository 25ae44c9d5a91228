// Menus made from the table of commands.
#pragma once

#include "ui/common/UiContext.h"

#include <functional>
#include <QMenu>

namespace pointloom {

/// Title and first key of a command that has a title, as the text of a menu's entry. The menu shows the key
/// and does not act on it.
QString entryText(const UiContext& context, Command command);

/// A context menu, in the language at its time. `popup` it: it deletes itself when it closes.
class CommandMenu : public QMenu {
public:
    CommandMenu(const UiContext& context, QWidget* owner);

    /// `command` has a title in the table. Disable the returned entry where it can do nothing.
    QAction* add(Command command, std::function<void()> run);

private:
    UiContext m_context;
};

}
