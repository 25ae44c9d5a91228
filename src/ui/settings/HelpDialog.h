// Help: the way through the program, the marker table, tips and every shortcut.
#pragma once

#include "ui/settings/Sheet.h"

namespace pointloom {

class HelpDialog : public Sheet {
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
