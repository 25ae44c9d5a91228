// A few choices side by side, exactly one of them made.
#pragma once

#include <QWidget>
#include <vector>

class QButtonGroup;
class QHBoxLayout;

namespace pointloom {

/// One stop for Tab; the arrow keys move the choice.
class SegmentedControl final : public QWidget {
    Q_OBJECT

public:
    explicit SegmentedControl(QWidget* parent);

    /// Replaces the choices, each known by its value.
    void setValues(const std::vector<int>& values);
    void setText(int value, const QString& text);

    int value() const;
    void setValue(int value); // emits nothing

Q_SIGNALS:
    void valuePicked(int value); // by the person

private:
    QButtonGroup* m_group;
    QHBoxLayout* m_row;
};

}
