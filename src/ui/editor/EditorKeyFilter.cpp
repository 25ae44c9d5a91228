#include "ui/editor/EditorKeyFilter.h"

#include <algorithm>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace pointloom {

namespace {

// The digits by where they are on the keyboard: with Shift, and on some keyboards without, the same keys
// write other characters.
Qt::Key keyOf(const QKeyEvent& event) {
    constexpr quint32 scanCodeOf1 = 10;
    constexpr quint32 scanCodeOf2 = 11;
    if (event.nativeScanCode() == scanCodeOf1 || event.key() == Qt::Key_Exclam)
        return Qt::Key_1;
    if (event.nativeScanCode() == scanCodeOf2 || event.key() == Qt::Key_At || event.key() == Qt::Key_QuoteDbl)
        return Qt::Key_2;
    return Qt::Key(event.key());
}

QKeyCombination pressed(const QKeyEvent& event) {
    return QKeyCombination(event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier), keyOf(event));
}

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

}

EditorKeyFilter::EditorKeyFilter(QWidget& editor, const CommandKeys& keys, Actions actions)
    : QObject(&editor)
    , m_editor(&editor)
    , m_keys(keys)
    , m_actions(std::move(actions)) {
    qApp->installEventFilter(this);
}

bool EditorKeyFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    if (!concernsEditor(*static_cast<QWidget*>(watched)))
        return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const CommandRow* command = m_keys.editorCommand(pressed(key));
    const auto action = command ? m_actions.find(command->id) : m_actions.end();
    if (action == m_actions.end() || keeps(QApplication::focusWidget(), key))
        return false;
    if (command->repeats || !key.isAutoRepeat())
        action->second();
    return true;
}

bool EditorKeyFilter::concernsEditor(const QWidget& receiver) const {
    if (!m_editor || !m_editor->isVisible() || QApplication::activePopupWidget())
        return false;
    return &receiver == m_editor || &receiver == m_editor->window() || m_editor->isAncestorOf(&receiver);
}

}
