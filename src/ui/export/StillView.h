// Shows one frame as it will be exported, fitted or at its actual size, or in a frame that its picture is
// moved under.
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
/// next and the others never. The older frame stays under a note until then. Of a frame that the picture
/// fills, the whole picture is shown, dark where it is cropped; dragging and the arrow keys move it.
class StillView : public QWidget {
    Q_OBJECT

public:
    explicit StillView(QWidget* parent = nullptr);

    /// Shows the frame at `time`, seconds, or why there is none, in `language`. Waits a moment for a later
    /// request.
    void request(const ExportJob& job, double time, Language language);

    /// The frame; the whole picture where it can be moved.
    const QImage& still() const { return m_still.image; }

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
    /// The user moved the picture; `position` as ExportSettings::fill.
    void moved(double position);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Request {
        ExportJob job;
        double time = 0;
        Language language = Language::english;
    };
    struct Outcome {
        QImage still;
        QImage overlay; // null when it is in the still
        QString fault;  // empty when all went well
    };
    struct ScaledImage {
        QImage image;
        QPixmap scaled; // at the size shown last

        const QPixmap& at(QSize pixels);
    };
    struct Drag {
        QPointF from;
        double position = 0;
    };

    static Outcome render(const Request& request);
    void startNext();
    void take(const Outcome& outcome);
    bool isMovable() const { return !m_overlay.image.isNull(); }
    QRectF frameRectangle() const;
    QRectF pictureRectangle() const;
    void moveTo(double position);
    void drawStill(QPainter& painter, ScaledImage& still, const QRectF& place);
    void drawFrame(QPainter& painter);
    void drawFault(QPainter& painter) const;
    void drawBusyNote(QPainter& painter, const QRectF& picture) const;

    ScaledImage m_still;
    ScaledImage m_overlay; // null unless the picture can be moved
    double m_position = 0; // of the picture, as ExportSettings::fill
    std::optional<Drag> m_drag;
    QString m_fault;
    QString m_busyNote; // empty when no frame is being rendered
    bool m_isActualSize = false;
    std::optional<Request> m_next;
    QTimer m_moment;
    BackgroundTask<Outcome> m_rendering;
};

}
