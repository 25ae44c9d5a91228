// One screen of the setup, between the step bar and the footer.
#pragma once

#include <QString>
#include <QWidget>

namespace pointloom {

class WizardPage : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Why the setup cannot go on, in the session's language; empty when it can.
    virtual QString obstacle() const = 0;

    /// Does what Continue means here; the frame moves on afterwards. False to stay.
    virtual bool confirm() = 0;

    /// Where typing should go when the screen appears.
    virtual void takeFocus() = 0;

Q_SIGNALS:
    void obstacleChanged();
    void continueRequested(); // Enter on a choice
    void completed();         // nothing is left to do here: Enter should go on
};

}
