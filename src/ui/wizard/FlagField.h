// Takes the two letters of a country and shows its flag as they are typed.
#pragma once

#include <QLineEdit>

class QLabel;

namespace pointloom {

class FlagField final : public QLineEdit {
    Q_OBJECT

public:
    explicit FlagField(QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QLabel* m_flag;
};

}
