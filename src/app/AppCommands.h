// The menus. Titles are fixed English texts; every command goes through the bridge.
#pragma once

#include "app/CommandBridge.h"

class QMenuBar;
class QMenu;

namespace pointloom {

class UndoStack;

namespace AppCommands {

/// Fills the menu bar; `bridge` is asked at the time of each command and outlives the menu. Returns the
/// menu of recent projects, which its owner fills.
QMenu* fillMenuBar(QMenuBar& menuBar, const CommandBridge& bridge, UndoStack& undo);

}

}
