// Progress of the queue of exports on the program's icon in the task bar.
#pragma once

#include "ui/export/ExportRunner.h"

namespace pointloom {

/// For desktops that follow `com.canonical.Unity.LauncherEntry`; elsewhere nothing happens.
class TaskBarProgress : public QObject {
    Q_OBJECT

public:
    /// `runner` outlives it.
    explicit TaskBarProgress(const ExportRunner& runner, QObject* parent = nullptr);
    ~TaskBarProgress() override;

private:
    void tell(int left, int percent);

    const ExportRunner& m_runner;
    std::pair<int, int> m_told{0, 0};
};

}
