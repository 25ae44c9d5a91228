// Choices side by side.
#pragma once

#include <QButtonGroup>
#include <QWidget>
#include <vector>

class QHBoxLayout;

namespace pointloom {

/// Exactly one choice is made. Tab stops once; the arrow keys move the choice.
class SegmentedControl final : public QWidget {
public:
    explicit SegmentedControl(QWidget* parent);

    /// Replaces the choices, which are identified by their values.
    void setValues(const std::vector<int>& values);

    void setText(int value, const QString& text);

    int value() const { return m_group->checkedId(); }

    /// Emits nothing.
    void setValue(int value);

    QButtonGroup& group() { return *m_group; }

private:
    QButtonGroup* m_group;
    QHBoxLayout* m_row;
};

}
