// A small whole number, or one of a list of values, with a button at each end.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <QElapsedTimer>
#include <QWidget>

namespace pointloom {

/// Up and Down step, digits write the number, Backspace takes it back. A value beyond the range is shown as
/// it is.
class ValueStepper : public QWidget {
    Q_OBJECT

public:
    using Value = std::optional<std::int64_t>; // absent only where that is allowed

    struct Kind {
        std::int64_t largest = 99; // from 0
        bool mayBeAbsent = false;
        /// How a value reads; the number itself when there is none.
        std::function<QString(std::int64_t)> words = {};
        /// The value that a key alone stands for, in place of digits that make a number.
        std::function<Value(int key)> valueOfKey = {};
    };

    explicit ValueStepper(Kind kind, QWidget* parent = nullptr);

    /// Without a signal.
    void setValue(Value value);
    Value value() const { return m_value; }
    QString text() const;

    /// What the value is: "Set 1, Dravnik". A screen reader says it with the value.
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
    void wheelEvent(QWheelEvent* event) override;
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
