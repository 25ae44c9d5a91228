// Control for a small whole number or one of a list of values, with a button at each end.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <QElapsedTimer>
#include <QWidget>

namespace pointloom {

/// Up and Down step, digits enter the number, Backspace removes a digit. It takes keys while its value is
/// marked, after a click on the value or by Tab; Enter and Escape end that. A value outside the range is
/// shown unchanged.
class ValueStepper : public QWidget {
    Q_OBJECT

public:
    using Value = std::optional<std::int64_t>; // absent only where that is allowed

    struct Kind {
        std::int64_t largest = 99; // from 0
        bool mayBeAbsent = false;
        /// Text of a value; the number itself without one.
        std::function<QString(std::int64_t)> words = {};
        /// The value of a single key, in place of digits of a number.
        std::function<Value(int key)> valueOfKey = {};
    };

    explicit ValueStepper(Kind kind, QWidget* parent = nullptr);

    /// Emits no signal.
    void setValue(Value value);
    Value value() const { return m_value; }
    QString text() const;

    /// The name of the value, "Set 1, Dravnik", for tool tip and screen readers.
    void setTitle(const QString& title);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void valueEdited(pointloom::ValueStepper::Value value);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    enum class Part { none, less, more };

    Part partAt(QPointF point) const;
    QRectF rectOf(Part part) const;
    bool isOurKey(int key) const;
    void step(int direction);
    void type(int digit);
    void edit(Value value);
    void announce();

    Kind m_kind;
    Value m_value = 0;
    QString m_title;
    Part m_hovered = Part::none;
    QElapsedTimer m_typedAt; // of the last digit; the next one soon after adds to it
};

}
