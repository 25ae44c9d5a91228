// A dialog over the window: a title, a body, and a row of buttons that ends in "Done".
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QDialog>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace pointloom {

/// Texts follow the session's language. Escape and "Done" close it. It is as high as its body; on a lower
/// screen the body scrolls.
class TitledDialog : public QDialog {
    Q_OBJECT

protected:
    /// `characters` is the width of the body, in average letters of the interface font.
    TitledDialog(const UiContext& context, int characters, QWidget* parent);

    const UiContext& context() const { return m_context; }
    QVBoxLayout& body() { return *m_body; }
    /// Buttons to the left of "Done" are added in front.
    QHBoxLayout& footer() { return *m_footer; }

    void setTitle(const QString& title);

    /// Runs `update` now and at each switch of language.
    template <class Update>
    void inEachLanguage(Update update) {
        m_bindings.watch(m_context.state.language, std::move(update));
    }
    Bindings& bindings() { return m_bindings; }

    /// Reduces the height to that of the body.
    void shrinkToBody();

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

    /// A label whose lines wrap at the width of the body.
    static QLabel* paragraph(QWidget* parent, bool isQuiet = false);

private:
    void giveBodyItsHeight();

    UiContext m_context;
    QLabel* m_title;
    QScrollArea* m_area;
    QVBoxLayout* m_body;
    QHBoxLayout* m_footer;
    QPushButton* m_done;
    Bindings m_bindings;
};

}
