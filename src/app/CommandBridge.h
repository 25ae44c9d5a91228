// Actions of the menu commands, filled in by the window's content.
#pragma once

#include "session/AppState.h"
#include "ui/common/Commands.h"

#include <functional>

namespace pointloom {

/// A command whose action is absent does nothing.
class CommandBridge {
public:
    using Action = std::function<void()>;

    static CommandBridge& shared() {
        static CommandBridge bridge;
        return bridge;
    }

    Action openVideo;
    Action exportVideo;
    Action showQueue;
    Action reset;
    Action openProject;
    Action saveProject;
    Action saveProjectAs;
    Action showLicense;
    Action showHelp;
    Action showAbout;
    Action downloadSampleCSV;
    Action openSample;
    Action showNews;
    Action showPreferences;
    std::function<void(Command)> runInEditor; // for commands of the group `editor`
    std::function<void(Screen)> goTo;

    static void call(const Action& action) {
        if (action)
            action();
    }
};

}
