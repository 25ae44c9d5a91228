// The state of the queue of exports, small, in the frame of the window.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/export/ExportRunner.h"

#include <QTimer>
#include <QToolButton>

namespace pointloom {

/// Visible while the list of exports is not empty.
class QueueIndicator : public QToolButton {
    Q_OBJECT

public:
    /// `runner` outlives the indicator.
    QueueIndicator(const UiContext& context, const ExportRunner& runner, QWidget* parent);

private:
    void showQueue();
    QPixmap iconOf(const QueueStatus& status) const;

    UiContext m_context;
    const ExportRunner& m_runner;
    QTimer m_refresh; // for the time that is left
    Bindings m_bindings;
};

}
