// Help: the steps of the program, the marker table, tips and all keys.
#pragma once

#include "ui/common/TitledDialog.h"

namespace pointloom {

class HelpDialog : public TitledDialog {
    Q_OBJECT

public:
    HelpDialog(const UiContext& context, QWidget* parent);

Q_SIGNALS:
    void sampleRequested();

private:
    QWidget* makePage();
    void addSection(QVBoxLayout& layout, L10nKey title, L10nKey detail);
    void addShortcuts(QVBoxLayout& layout);
    QWidget* makeKeys(const QStringList& labels, QWidget* parent) const;
};

}
