// The last screen of the wizard: the video, dropped or chosen in a dialog, and its properties.
#pragma once

#include "ui/common/VideoImport.h"
#include "ui/wizard/WizardPage.h"

class QLabel;
class QPushButton;
class QStackedWidget;

namespace pointloom {

class DropTarget;
class RecordingList;
class VideoStill;

class VideoPage final : public WizardPage {
    Q_OBJECT

public:
    VideoPage(const UiContext& context, WizardFlow& flow, QWidget* parent);

    QString obstacle() const override;
    bool confirm() override;
    void takeFocus() override;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QWidget* makeVideoCard();
    void browse();
    void import(const QStringList& paths);
    void showVideo();
    void showAbsentVideo();
    void showFacts();
    void showTexts();
    void showError(const QString& message);

    VideoImport m_import;
    QString m_reading;           // name of the file that is being read
    QWidget* m_absent = nullptr; // note on the video of the match
    QLabel* m_absentName = nullptr;
    QLabel* m_absentPlace = nullptr;
    QStackedWidget* m_states;
    DropTarget* m_target;
    QWidget* m_card = nullptr;
    VideoStill* m_poster = nullptr;
    QLabel* m_name = nullptr;
    QLabel* m_facts = nullptr;
    RecordingList* m_files = nullptr;
    QLabel* m_error = nullptr;
    QPushButton* m_change = nullptr;
};

}
