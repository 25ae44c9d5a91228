// One export in the list of the queue, with what can be done with it.
#pragma once

#include "export/ExportQueue.h"
#include "ui/common/UiContext.h"
#include "ui/style/Controls.h"

#include <QProgressBar>

namespace pointloom {

class QueueRow : public QFrame {
    Q_OBJECT

public:
    /// The queue outlives the row.
    QueueRow(const UiContext& context, ExportQueue& queue, const QueuedExport& entry, QWidget* parent);

    /// Where the entry waits: whether others wait before and after it.
    struct Neighbours {
        bool before = false;
        bool after = false;
    };
    void show(const QueuedExport& entry, const QueueStatus& status, Neighbours neighbours);

private:
    void build();
    QToolButton* addButton(const char* name, const QString& icon);
    void showState(const QueuedExport& entry);
    void setDetail(Controls::TextRole role, const QString& text);
    QString progressText(const QueueStatus& status) const;

    UiContext m_context;
    ExportQueue& m_queue;
    const QUuid m_id;
    QString m_outputPath;
    bool m_isLeft = true;
    QLabel* m_icon;
    ElidedLabel* m_name;
    ElidedLabel* m_path;
    QProgressBar* m_bar;
    QLabel* m_detail;
    QPushButton* m_retry;
    QToolButton* m_play;
    QToolButton* m_folder;
    QToolButton* m_up;
    QToolButton* m_down;
    QToolButton* m_remove;
};

}
