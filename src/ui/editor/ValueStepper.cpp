#include "ui/editor/ValueStepper.h"

#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <algorithm>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

namespace pointloom {

namespace {

constexpr int iconSide = 12;
constexpr int widestButton = 22;

bool endsEditing(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
}

QAccessibleInterface* makeStepperInterface(const QString&, QObject* object) {
    auto* stepper = qobject_cast<ValueStepper*>(object);
    return stepper ? new QAccessibleWidget(stepper, QAccessible::SpinBox) : nullptr;
}

}

ValueStepper::ValueStepper(Kind kind, QWidget* parent)
    : QWidget(parent)
    , m_kind(std::move(kind)) {
    QAccessible::installFactory(makeStepperInterface); // once is enough, again does nothing
    setFocusPolicy(Qt::TabFocus);                      // a click on a button leaves the keys with the editor
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ValueStepper::setValue(Value value) {
    if (std::exchange(m_value, value) == value)
        return;
    announce();
    update();
}

QString ValueStepper::text() const {
    if (!m_value)
        return QStringLiteral("–");
    return m_kind.words ? m_kind.words(*m_value) : QString::number(*m_value);
}

void ValueStepper::setTitle(const QString& title) {
    m_title = title;
    setToolTip(title);
    announce();
}

void ValueStepper::announce() {
    setAccessibleName(m_title + QStringLiteral(": ") + text());
}

QSize ValueStepper::minimumSizeHint() const {
    return {fontMetrics().horizontalAdvance(QStringLiteral("00")) + 2 * iconSide + Space::xs,
            fontMetrics().height() + 2 * Space::xs + 2};
}

QSize ValueStepper::sizeHint() const {
    return minimumSizeHint().grownBy({Space::s, 0, Space::s, 0});
}

QRectF ValueStepper::rectOf(Part part) const {
    const double buttonWidth = std::min<double>(widestButton, width() / 3.0);
    return {part == Part::less ? 0 : width() - buttonWidth, 0, buttonWidth, static_cast<double>(height())};
}

ValueStepper::Part ValueStepper::partAt(QPointF point) const {
    for (const Part part : {Part::less, Part::more}) {
        if (rectOf(part).contains(point))
            return part;
    }
    return Part::none;
}

void ValueStepper::step(int direction) {
    if (direction > 0) {
        if (!m_value)
            edit(0);
        else if (*m_value < m_kind.largest)
            edit(*m_value + 1);
        return;
    }
    if (m_value && *m_value > 0)
        edit(*m_value - 1);
    else if (m_value && m_kind.mayBeAbsent)
        edit(std::nullopt);
}

void ValueStepper::type(int digit) {
    constexpr qint64 soon = 1200; // milliseconds
    const bool adds = m_typedAt.isValid() && m_typedAt.elapsed() < soon && m_value && *m_value > 0;
    std::int64_t number = digit;
    if (adds && *m_value <= m_kind.largest / 10 && *m_value * 10 + digit <= m_kind.largest)
        number = *m_value * 10 + digit;
    m_typedAt.start();
    edit(number);
}

void ValueStepper::edit(Value value) {
    if (value == m_value)
        return;
    setValue(value);
    Q_EMIT valueEdited(value);
    if (QAccessible::isActive()) {
        QAccessibleEvent changed(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&changed);
    }
}

bool ValueStepper::isOurKey(int key) const {
    if (m_kind.valueOfKey && m_kind.valueOfKey(key))
        return true;
    const bool isDigit = key >= Qt::Key_0 && key <= Qt::Key_9;
    return isDigit || key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Backspace ||
           key == Qt::Key_Delete || endsEditing(key);
}

bool ValueStepper::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        const bool isPlain = !(key.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier));
        if (isPlain && isOurKey(key.key())) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void ValueStepper::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (!isOurKey(key) || (event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier))) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (endsEditing(key))
        clearFocus();
    else if (key == Qt::Key_Up || key == Qt::Key_Down)
        step(key == Qt::Key_Up ? 1 : -1);
    else if (key == Qt::Key_Backspace || key == Qt::Key_Delete)
        edit(m_kind.mayBeAbsent ? Value() : Value(0));
    else if (m_kind.valueOfKey) {
        if (const Value value = m_kind.valueOfKey(key))
            edit(value);
    } else
        type(key - Qt::Key_0);
}

void ValueStepper::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const Part part = partAt(event->position());
    if (part == Part::none)
        setFocus(Qt::MouseFocusReason);
    else
        step(part == Part::more ? 1 : -1);
}

void ValueStepper::mouseMoveEvent(QMouseEvent* event) {
    const Part part = partAt(event->position());
    if (std::exchange(m_hovered, part) != part)
        update();
}

void ValueStepper::leaveEvent(QEvent*) {
    m_hovered = Part::none;
    update();
}

void ValueStepper::focusInEvent(QFocusEvent*) {
    m_typedAt.invalidate();
    update();
}

void ValueStepper::focusOutEvent(QFocusEvent*) {
    update();
}

void ValueStepper::paintEvent(QPaintEvent*) {
    const ColorTokens& colors = tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = hasFocus() ? 2 : 1;
    const QRectF field = QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2);
    painter.setPen(QPen(hasFocus() ? colors.accent : colors.line, line));
    painter.setBrush(colors.raised);
    painter.drawRoundedRect(field, Radius::field, Radius::field);

    for (const Part part : {Part::less, Part::more}) {
        const QRectF place = rectOf(part);
        const QColor color = m_hovered == part ? colors.accent : colors.quietText;
        const QString icon = part == Part::less ? QStringLiteral("minus") : QStringLiteral("plus");
        const QPointF corner = place.center() - QPointF(iconSide, iconSide) / 2;
        painter.drawPixmap(corner.toPoint(), Icons::pixmap(icon, iconSide, color, devicePixelRatioF()));
    }
    painter.setFont(strongFont(font()));
    if (hasFocus()) {
        const double button = rectOf(Part::less).width();
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.accent);
        painter.drawRoundedRect(field.adjusted(button, 4, -button, -4), 3, 3);
    }
    painter.setPen(hasFocus() ? colors.onAccent : m_value ? colors.text : colors.quietText);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

}
