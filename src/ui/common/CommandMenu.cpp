#include "ui/common/CommandMenu.h"

namespace pointloom {

QString entryText(const UiContext& context, Command command) {
    const QString title = context.text(*commandRow(command).title);
    const auto keys = context.keys.shown(command);
    return keys.isEmpty() ? title : title + u'\t' + keyLabel(keys.first(), context.state.language);
}

CommandMenu::CommandMenu(const UiContext& context, QWidget* owner)
    : QMenu(owner)
    , m_context(context) {
    setAttribute(Qt::WA_DeleteOnClose);
}

QAction* CommandMenu::add(Command command, std::function<void()> run) {
    QAction* entry = addAction(entryText(m_context, command));
    connect(entry, &QAction::triggered, this, std::move(run));
    return entry;
}

}
