// The export of the session's video: its choices, its progress, its result.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/export/DestinationRow.h"
#include "ui/export/ExportOptionsPanel.h"
#include "ui/export/ExportRunner.h"
#include "ui/export/ExportStage.h"
#include "ui/export/ExportSummary.h"
#include "ui/export/StillView.h"
#include "ui/style/Bindings.h"

#include <optional>
#include <QDialog>
#include <QScrollArea>

namespace pointloom {

/// Its export goes on in the queue when it is closed. While the queue has exports that are left it adds one
/// more and closes.
class ExportSheet : public QDialog {
    Q_OBJECT

public:
    /// `runner` outlives the sheet.
    ExportSheet(const UiContext& context, ExportRunner& runner, QWidget* parent);
    ~ExportSheet() override;

    bool isExporting() const { return m_runner.isRunning(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void build();
    QWidget* makeSetup();
    void bind();
    void showWords();
    void showStage();
    void showOptions();
    void updateExport();
    void requestStill();
    void fitToOptions();
    void offerEncoders();
    std::optional<ExportJob> job() const;
    QueuedExport entry(const ExportJob& job) const;
    bool isQueueBusy() const;
    void start();
    void stop();

    UiContext m_context;
    ExportRunner& m_runner;
    QLabel* m_title;
    StillView* m_still;
    QLabel* m_moveHint; // where the picture can be moved
    ExportSummary* m_summary;
    ExportOptionsPanel* m_options;
    QScrollArea* m_optionsArea;
    QWidget* m_setup; // destination and buttons, before an export
    DestinationRow* m_destination;
    QPushButton* m_cancel;
    QPushButton* m_start;
    ExportStage* m_stage;
    Bindings m_bindings; // ends first
};

}
