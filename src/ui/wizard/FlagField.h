// The field for a player's country, with a list of all countries.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QLineEdit>

class QLabel;
class QStandardItemModel;

namespace pointloom {

/// Typing narrows the list, the arrow button shows all of it. The field means the likeliest country of what
/// is typed, shows its flag at once and its name when it loses the focus.
class FlagField final : public QLineEdit {
    Q_OBJECT

public:
    FlagField(const UiContext& context, QWidget* parent);

    /// Shows the country with a code. Emits nothing.
    void setCode(const std::optional<QString>& code);

    /// Empty when nothing is entered, and for a text that means no country.
    std::optional<QString> code() const;

    /// What was entered and means no country; empty when it does.
    QString unknown() const;

Q_SIGNALS:
    void codeEdited();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void offer(const QString& typed);
    void showList();
    void takeLikeliest();
    void showFlag();
    void showTexts();

    UiContext m_context;
    Language m_language; // of the text
    QLabel* m_flag;
    QAction* m_showAll;
    QStandardItemModel* m_countries; // in the list
    QString m_refused;               // a code from elsewhere that no country has
    Bindings m_bindings;
};

}
