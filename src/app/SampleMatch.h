// The sample match, which the program draws itself when it is first opened.
#pragma once

#include "persistence/ProjectFile.h"
#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"

#include <memory>
#include <QObject>

class QProgressDialog;

namespace pointloom {

class SampleMatch final : public QObject {
    Q_OBJECT

public:
    /// `window` is the parent of the dialog that shows the progress.
    SampleMatch(const UiContext& context, QWidget* window);
    ~SampleMatch() override;

    /// Emits `ready`, at once when the video is there, else when it has been drawn. The user may cancel; what
    /// fails is shown in an alert.
    void prepare();

    /// The match with the score after each point of its video.
    static ProjectFile project();

    /// In the data folder.
    static QString videoPath();

Q_SIGNALS:
    void ready();

private:
    void draw();
    void finish(const QString& fault);

    UiContext m_context;
    QWidget* m_window;
    std::unique_ptr<QProgressDialog> m_progress; // while the video is drawn
    BackgroundWorker m_worker;
};

}
