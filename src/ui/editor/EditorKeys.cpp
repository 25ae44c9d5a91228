#include "ui/editor/EditorKeys.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace pointloom {

namespace {

template <class... Kinds>
bool isAnyOf(const QWidget* widget) {
    return (qobject_cast<const Kinds*>(widget) || ...);
}

bool keeps(QWidget* focus, const QKeyEvent& event) {
    if (!focus)
        return false;
    if (isAnyOf<QLineEdit, QAbstractSpinBox, QTextEdit, QPlainTextEdit, QComboBox>(focus))
        return true;
    const int key = event.key();
    if (isAnyOf<QAbstractButton>(focus))
        return key == Qt::Key_Space;
    if (isAnyOf<QAbstractSlider>(focus))
        return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
    if (isAnyOf<QAbstractItemView>(focus) && (key == Qt::Key_Up || key == Qt::Key_Down))
        return true;
    QKeyEvent question(QEvent::ShortcutOverride, key, event.modifiers(), event.text(), event.isAutoRepeat());
    question.ignore();
    QApplication::sendEvent(focus, &question);
    return question.isAccepted();
}

// Qt does it for the Menu key, which many keyboards lack.
void openContextMenu(QWidget& focus) {
    const QPoint place = focus.rect().center();
    QContextMenuEvent request(QContextMenuEvent::Keyboard, place, focus.mapToGlobal(place));
    QApplication::sendEvent(&focus, &request);
}

}

EditorKeys::EditorKeys(QWidget& editor, const CommandKeys& keys, Actions actions)
    : QObject(&editor)
    , m_editor(editor)
    , m_keys(keys)
    , m_actions(std::move(actions)) {
    qApp->installEventFilter(this);
}

void EditorKeys::run(Command command) const {
    if (const auto action = m_actions.find(command); action != m_actions.end())
        action->second();
}

void EditorKeys::endTyping() const {
    QWidget* focus = m_editor.window()->focusWidget();
    const QKeyEvent digit(QEvent::KeyPress, Qt::Key_1, Qt::NoModifier, QStringLiteral("1"));
    if (focus && m_editor.isAncestorOf(focus) && keeps(focus, digit))
        focus->clearFocus();
}

bool EditorKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    if (!concernsEditor(*static_cast<QWidget*>(watched)))
        return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const auto pressed = pressedKey(key);
    if (pressed == (Qt::SHIFT | Qt::Key_F10)) {
        openContextMenu(*static_cast<QWidget*>(watched));
        return true;
    }
    const CommandRow* command = pressed ? m_keys.commandOf(*pressed) : nullptr;
    const auto action = command ? m_actions.find(command->id) : m_actions.end();
    if (action == m_actions.end() || keeps(m_editor.window()->focusWidget(), key))
        return false;
    if (command->repeats || !key.isAutoRepeat())
        action->second();
    return true;
}

bool EditorKeys::concernsEditor(const QWidget& receiver) const {
    if (!m_editor.isVisible() || QApplication::activePopupWidget())
        return false;
    return &receiver == &m_editor || &receiver == m_editor.window() || m_editor.isAncestorOf(&receiver);
}

}
