// One picture of a video, decoded off the main thread.
#pragma once

#include "ui/common/BackgroundTask.h"

#include <QImage>
#include <QSize>
#include <QString>
#include <QWidget>

namespace pointloom {

/// The frame shown at `time` (seconds), upright and with square pixels, no larger than `largest`. Null when
/// it cannot be had. Takes its time: for worker threads.
QImage readVideoStill(const QString& path, double time, QSize largest);

/// Shows a still as large as it fits; a film icon while there is none.
class VideoStill : public QWidget {
    Q_OBJECT

public:
    explicit VideoStill(QWidget* parent = nullptr);

    /// A later call, also of `clear`, replaces an earlier one.
    void showStill(const QString& path, double time);
    void clear();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF pictureArea() const;

    QImage m_picture;
    BackgroundTask<QImage> m_reading;
};

}
