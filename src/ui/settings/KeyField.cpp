#include "ui/settings/KeyField.h"

#include <QKeyEvent>

namespace pointloom {

KeyField::KeyField(const UiContext& context, Command command, QWidget* parent)
    : QPushButton(parent)
    , m_context(context)
    , m_command(command) {
    const std::string_view name = rawValue(command);
    setObjectName(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    setProperty("kind", QStringLiteral("normal"));
    setCursor(Qt::PointingHandCursor);
    setAutoDefault(true);
    setCheckable(true); // the ring of a checked button shows which one asks
    connect(this, &QPushButton::clicked, this, [this] { setChecked(m_isAsking); });
}

void KeyField::showKeys() {
    const Language language = m_context.state.language;
    QStringList labels;
    for (const QKeyCombination key : m_context.keys.shown(m_command))
        labels << keyLabel(key, language);
    setText(labels.isEmpty() ? QStringLiteral("–") : labels.join(QStringLiteral("   ")));
    setAccessibleName(
        commandName(m_command, language) + QStringLiteral(": ") +
        (labels.isEmpty() ? m_context.text(L10nKey::keysNone) : labels.join(QStringLiteral(", "))));
}

void KeyField::setAsking(bool isAsking) {
    m_isAsking = isAsking;
    setChecked(isAsking);
    if (isAsking)
        setText(m_context.text(L10nKey::keysPress));
    else
        showKeys();
}

void KeyField::showAsked(QKeyCombination key) {
    setText(keyLabel(key, m_context.state.language));
}

bool KeyField::event(QEvent* event) {
    if (m_isAsking && event->type() == QEvent::ShortcutOverride) {
        event->accept(); // before menus and the dialog use the key
        return true;
    }
    return QPushButton::event(event);
}

void KeyField::keyPressEvent(QKeyEvent* event) {
    if (!m_isAsking)
        return QPushButton::keyPressEvent(event);
    if (event->key() == Qt::Key_Escape)
        Q_EMIT gaveUp();
    else if (const auto key = pressedKey(*event); key && !event->isAutoRepeat())
        Q_EMIT keyPressed(*key);
}

bool KeyField::focusNextPrevChild(bool isNext) {
    if (!m_isAsking)
        return QPushButton::focusNextPrevChild(isNext);
    Q_EMIT leftByTab();
    return true;
}

}
