// About: version, licence and libraries of the program.
#pragma once

#include "ui/common/TitledDialog.h"

namespace pointloom {

class AboutDialog : public TitledDialog {
    Q_OBJECT

public:
    AboutDialog(const UiContext& context, QWidget* parent);

private:
    QWidget* makeProgram();
    QWidget* makeLicence();
    QWidget* makeLibraries();
};

}
