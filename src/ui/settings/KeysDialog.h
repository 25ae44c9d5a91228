// All commands with their keys, to be found, changed, and shared as a file. Each change holds and is kept at
// once.
#pragma once

#include "ui/common/TitledDialog.h"
#include "ui/settings/KeyField.h"

#include <functional>
#include <vector>

class QLineEdit;

namespace pointloom {

class KeysDialog : public TitledDialog {
    Q_OBJECT

public:
    KeysDialog(const UiContext& context, QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Row {
        QWidget* widget;
        QLabel* usual; // names the usual keys where others are in use
        KeyField* field;
        QString words; // that the search finds
    };
    struct Group {
        QLabel* heading;
        std::vector<Row> rows;
    };
    /// A button beside the message and what it does.
    struct Answer {
        QString text;
        std::function<void()> act;
    };

    QWidget* makeList();
    Row makeRow(const CommandRow& command, QWidget* parent);
    QWidget* makeMessage();
    void makeFooter();
    void showRows();
    void find();

    void ask(KeyField& field);
    void stopAsking();
    void take(QKeyCombination key);
    void propose(Command command, const CommandKeys::Keys& keys);
    void give(Command command, const CommandKeys::Keys& keys);
    void use(const CommandKeys::Chosen& chosen, const QString& message);
    void say(const QString& message, const std::vector<Answer>& answers = {});
    void importKeys();
    void exportKeys();

    QLineEdit* m_search;
    QLabel* m_nothingFound;
    std::vector<Group> m_groups;
    QLabel* m_message;
    QPushButton* m_answers[2];
    std::function<void()> m_acts[2];
    QPushButton* m_allUsual;
    KeyField* m_asking = nullptr;
};

}
