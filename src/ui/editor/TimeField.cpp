#include "ui/editor/TimeField.h"

#include "ui/common/TimeCode.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QStyle>
#include <QToolTip>
#include <utility>

namespace pointloom {

TimeField::TimeField(const UiContext& context, QWidget* parent)
    : QLineEdit(parent)
    , m_context(context) {
    constexpr int longest = 20;
    setMaxLength(longest);
    setAlignment(Qt::AlignCenter);
    setProperty("kind", QStringLiteral("plain"));
    // The width of the widest time, so that nothing moves during playback.
    constexpr int frame = 7;
    setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("00:00:00.00")) + 2 * (frame + Space::xs));
    connect(this, &QLineEdit::returnPressed, this, &TimeField::enter);
    connect(this, &QLineEdit::textEdited, this, [this] { setRefused(false); });
    AppState& state = m_context.state;
    m_bindings.watch(state.currentTime, [this] {
        if (!hasFocus())
            showPlayhead();
    });
    m_bindings.watchAll(
        [this] {
            setAccessibleName(m_context.text(L10nKey::editorPlayhead));
            setToolTip(m_context.textWithKey(L10nKey::commandGoToTime, Command::goToTime));
        },
        state.language, m_context.keys.chosen());
}

void TimeField::showPlayhead() {
    setText(timeCode(m_context.state.currentTime));
}

void TimeField::enter() {
    if (text().trimmed().isEmpty())
        return clearFocus();
    const auto seconds = typedTime(text());
    if (!seconds)
        return refuse(format(m_context.text(L10nKey::editorTimeUnknown), text().trimmed()));
    const double duration = m_context.state.videoDuration;
    // The end as it is shown is rounded down.
    if (*seconds > duration)
        return refuse(format(m_context.text(L10nKey::editorTimeAfterEnd), shortTime(duration, true)));
    clearFocus();
    Q_EMIT timeEntered(*seconds);
}

void TimeField::refuse(const QString& reason) {
    constexpr int longEnough = 8000; // milliseconds, to read it
    setRefused(true);
    selectAll();
    setAccessibleDescription(reason);
    QToolTip::showText(mapToGlobal(QPoint(0, height())), plainToolTip({reason}), this, {}, longEnough);
}

void TimeField::setRefused(bool isRefused) {
    if (property("refused").toBool() == isRefused)
        return;
    setProperty("refused", isRefused);
    style()->unpolish(this);
    style()->polish(this);
    if (!isRefused) {
        setAccessibleDescription({});
        QToolTip::hideText();
    }
}

void TimeField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    selectAll();
    m_isEntered = event->reason() == Qt::MouseFocusReason;
}

void TimeField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return;
    setRefused(false);
    showPlayhead();
}

void TimeField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        clearFocus();
    else
        QLineEdit::keyPressEvent(event);
}

// The press that enters the field places the cursor; all of it is to be replaced.
void TimeField::mouseReleaseEvent(QMouseEvent* event) {
    QLineEdit::mouseReleaseEvent(event);
    if (std::exchange(m_isEntered, false) && !hasSelectedText())
        selectAll();
}

}
