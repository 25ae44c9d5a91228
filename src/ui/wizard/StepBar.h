// The bar of the wizard's steps to the editor, with a menu of languages.
#pragma once

#include "ui/style/Bindings.h"
#include "ui/wizard/WizardFlow.h"

#include <QAbstractButton>
#include <vector>

class QToolButton;

namespace pointloom {

/// One step: its number in a circle, or a check mark, and its name.
class StepButton final : public QAbstractButton {
    Q_OBJECT

public:
    enum class Mark { upcoming, current, done };

    StepButton(int number, QWidget* parent);

    /// Steps that are reachable and not current can be pressed.
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

class StepBar final : public QWidget {
    Q_OBJECT

public:
    StepBar(const UiContext& context, WizardFlow& flow, QWidget* parent);

    /// Updates the marks. Called when a step was done or undone.
    void showProgress();

Q_SIGNALS:
    void stepPicked(Screen screen);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QToolButton* makeLanguageMenu();
    void fitLanguageMenu();
    void showTexts();

    UiContext m_context;
    WizardFlow& m_flow;
    std::vector<StepButton*> m_steps;
    QToolButton* m_languageMenu;
    Bindings m_bindings;
};

}
