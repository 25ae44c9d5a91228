// The lower part of the export sheet while an export runs and after it.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/export/ExportRunner.h"
#include "ui/style/Bindings.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

namespace pointloom {

class ExportStage : public QWidget {
    Q_OBJECT

public:
    ExportStage(const UiContext& context, const ExportRunner& runner, QWidget* parent);

    /// Shows "Stopping…".
    void showStopping();

Q_SIGNALS:
    void cancelRequested();
    void anotherRequested();
    void optionsRequested();
    void retryRequested();
    void closeRequested();
    void resumeRequested();
    void playRequested();
    void folderRequested();

private:
    using Stage = AppState::ExportStatus::Stage;

    void build();
    void bind();
    QPushButton* addButton(const char* name, bool isPrimary, void (ExportStage::*chosen)());
    void showWords();
    void showStage();
    QWidget* makeDamageRow();
    void showResult();
    void showProgress();

    UiContext m_context;
    const ExportRunner& m_runner;
    QLabel* m_icon;
    QLabel* m_heading;
    QLabel* m_detail;
    QWidget* m_damageRow = nullptr;
    QLabel* m_damageIcon = nullptr;
    QLabel* m_damage = nullptr;
    QProgressBar* m_bar;
    QPushButton* m_another = nullptr;
    QPushButton* m_options = nullptr;
    QPushButton* m_folder = nullptr;
    QPushButton* m_close = nullptr;
    QPushButton* m_continue = nullptr;
    QPushButton* m_resume = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_play = nullptr;
    QPushButton* m_retry = nullptr;
    QTimer m_refresh;
    Bindings m_bindings; // ends first
};

}
