// The desktop's file manager.
#pragma once

#include <QString>

namespace pointloom {

/// Shows the file selected in its folder, where the file manager can; opens the folder elsewhere. Returns at
/// once.
void showInFileManager(const QString& path);

}
