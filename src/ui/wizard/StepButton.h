// One step of the bar: its number in a circle, or a check mark, and its name.
#pragma once

#include <QAbstractButton>

namespace pointloom {

class StepButton final : public QAbstractButton {
    Q_OBJECT

public:
    enum class Mark { upcoming, current, done };

    StepButton(int number, QWidget* parent);

    /// Steps that are done, or next in turn, can be pressed.
    void setMark(Mark mark, bool isReachable);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int m_number;
    Mark m_mark = Mark::upcoming;
};

}
