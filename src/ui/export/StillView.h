// Shows one frame as it will be exported, fitted or at its actual size.
#pragma once

#include "export/ExportJob.h"
#include "l10n/Language.h"
#include "ui/common/BackgroundTask.h"

#include <optional>
#include <QImage>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

namespace pointloom {

/// Renders in the background, one frame at a time; of requests that come meanwhile, the latest is rendered
/// next and the others never. The older frame stays under a note until then.
class StillView : public QWidget {
    Q_OBJECT

public:
    explicit StillView(QWidget* parent = nullptr);

    /// Shows the frame at `time`, seconds, or why there is none, in `language`. Waits a moment for a later
    /// request.
    void request(const ExportJob& job, double time, Language language);

    const QImage& still() const { return m_still; }

    /// The reason why there is no frame; empty takes it back.
    void setFault(const QString& fault);
    /// One pixel of the frame for one of the screen.
    void setActualSize(bool isActualSize);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The requested frame is shown.
    void rendered();
    /// The reason why there is none is shown.
    void failed();

protected:
    void paintEvent(QPaintEvent* event) override;

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
    QRectF pictureRectangle() const;
    const QPixmap& scaledStill(QSize pixels);
    void drawFault(QPainter& painter) const;
    void drawBusyNote(QPainter& painter, const QRectF& picture) const;

    QImage m_still;
    QPixmap m_scaled; // `m_still` at the size shown last
    QString m_fault;
    QString m_busyNote; // empty when no frame is being rendered
    bool m_isActualSize = false;
    std::optional<Request> m_next;
    QTimer m_moment;
    BackgroundTask<Outcome> m_rendering;
};

}
