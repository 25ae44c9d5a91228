// The list of the queue of exports.
#pragma once

#include "ui/common/TitledDialog.h"
#include "ui/export/ExportRunner.h"
#include "ui/export/QueueRow.h"

#include <map>
#include <QTimer>
#include <QVBoxLayout>

namespace pointloom {

class QueueDialog : public TitledDialog {
    Q_OBJECT

public:
    /// `runner` outlives the dialog.
    QueueDialog(const UiContext& context, ExportRunner& runner, QWidget* parent);

private:
    void showQueue();
    void showRows(const std::vector<QueuedExport>& entries, const QueueStatus& status);

    ExportRunner& m_runner;
    QLabel* m_summary;
    QLabel* m_fault; // of the file
    QVBoxLayout* m_list;
    std::map<QUuid, QueueRow*> m_rows;
    QPushButton* m_pause;
    QPushButton* m_removeEnded;
    QTimer m_refresh;
};

}
