// Renders frames as they will be exported, beside the window.
#pragma once

#include "export/ExportJob.h"
#include "l10n/Language.h"
#include "ui/common/BackgroundTask.h"

#include <optional>
#include <QImage>
#include <QObject>
#include <QTimer>

namespace pointloom {

/// One frame at a time; of requests that come while one is rendered, the latest is rendered next and the
/// others never.
class StillRenderer : public QObject {
    Q_OBJECT

public:
    explicit StillRenderer(QObject* parent = nullptr);

    /// The frame at `time`, seconds; faults are told in `language`. Waits a moment for a later request.
    void request(const ExportJob& job, double time, Language language);

    bool isBusy() const { return m_next.has_value() || m_rendering.isRunning(); }

Q_SIGNALS:
    void rendered(const QImage& still);
    void failed(const QString& message);

private:
    struct Request {
        ExportJob job;
        double time = 0;
        Language language = Language::english;
    };
    struct Outcome {
        QImage still;
        QString fault; // empty when all went well
    };

    static Outcome render(const Request& request);
    void startNext();
    void take(const Outcome& outcome);

    std::optional<Request> m_next;
    QTimer m_moment;
    BackgroundTask<Outcome> m_rendering;
};

}
