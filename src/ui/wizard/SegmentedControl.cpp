#include "ui/wizard/SegmentedControl.h"

#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QHBoxLayout>
#include <QSignalBlocker>

namespace pointloom {

SegmentedControl::SegmentedControl(QWidget* parent)
    : QWidget(parent)
    , m_group(new QButtonGroup(this))
    , m_row(new QHBoxLayout(this)) {
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(Space::xs);
    m_row->addStretch(1);
}

void SegmentedControl::setValues(const std::vector<int>& values) {
    for (QAbstractButton* button : m_group->buttons())
        delete button;
    for (std::size_t index = 0; index < values.size(); ++index) {
        QPushButton* button = Controls::button(Controls::ButtonKind::normal, this);
        button->setCheckable(true);
        m_group->addButton(button, values[index]);
        m_row->insertWidget(static_cast<int>(index), button);
    }
}

void SegmentedControl::setText(int value, const QString& text) {
    if (QAbstractButton* button = m_group->button(value))
        button->setText(text);
}

void SegmentedControl::setValue(int value) {
    const QSignalBlocker quiet(m_group);
    if (QAbstractButton* button = m_group->button(value))
        button->setChecked(true);
}

}
