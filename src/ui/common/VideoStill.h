// A frame of a video, decoded in the background.
#pragma once

#include "media/Recording.h"
#include "ui/common/BackgroundTask.h"

#include <QImage>
#include <QWidget>

namespace pointloom {

/// Shows the frame as large as it fits; a film icon while there is none.
class VideoStill : public QWidget {
    Q_OBJECT

public:
    explicit VideoStill(QWidget* parent = nullptr);

    /// The frame that is on screen at `time` (seconds). A later call, also of `clear`, replaces an earlier
    /// one.
    void showStill(const media::Recording& recording, double time);
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
