// Start of the program, and the objects that live as long as it runs.
#pragma once

#include <QStringList>

class QApplication;

namespace pointloom::App {

/// Opens the window and runs until it is closed, or hands `files` (absolute names) to the instance that is
/// running already. Returns the exit status.
int run(QApplication& application, const QStringList& files);

}
