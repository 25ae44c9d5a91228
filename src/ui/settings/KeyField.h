// A button that shows a command's keys and, once pressed, takes the key that is pressed next.
#pragma once

#include "ui/common/UiContext.h"

#include <QPushButton>

namespace pointloom {

class KeyField : public QPushButton {
    Q_OBJECT

public:
    KeyField(const UiContext& context, Command command, QWidget* parent);

    Command command() const { return m_command; }

    /// Shows the keys in use.
    void showKeys();

    bool isAsking() const { return m_isAsking; }
    /// While it asks, Escape gives up and Tab moves the focus, through `leftByTab`; each other key is passed
    /// on.
    void setAsking(bool isAsking);
    /// Shown instead of the keys while it asks.
    void showAsked(QKeyCombination key);

Q_SIGNALS:
    void keyPressed(QKeyCombination key);
    void gaveUp();
    void leftByTab();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;

private:
    UiContext m_context;
    Command m_command;
    bool m_isAsking = false;
};

}
