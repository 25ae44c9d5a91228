// Opens an exported file with other programs of the desktop.
#pragma once

#include "ui/common/UiContext.h"

namespace pointloom {

/// The user is told where no program opens it.
struct ResultFile {
    const UiContext& context;
    QWidget* parent; // of messages; lives as long as a file manager takes to answer
    QString path;

    void play() const;
    /// Shows the file selected in its folder, where the file manager can; opens the folder elsewhere. Returns
    /// at once.
    void showInFolder() const;
};

}
