// A bar with a message and up to two actions.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace pointloom {

class MessageBar : public QFrame {
    Q_OBJECT

public:
    /// Hidden until the first message.
    explicit MessageBar(const UiContext& context, QWidget* parent = nullptr);

    /// `detail` is shown below in small letters. An empty text leaves its part out.
    void showMessage(const QString& message, const QString& detail = {}, const QString& firstAction = {},
                     const QString& secondAction = {});
    QString message() const { return m_message->text(); }

Q_SIGNALS:
    void firstActionChosen();
    void secondActionChosen();
    void closed();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void arrangeActions();

    QLabel* m_icon;
    QLabel* m_message;
    QLabel* m_detail;
    QPushButton* m_firstAction;
    QPushButton* m_secondAction;
    QToolButton* m_close;
    QBoxLayout* m_actions;
    Bindings m_bindings;
};

}
