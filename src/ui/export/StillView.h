// Shows one frame, fitted or at its actual size.
#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace pointloom {

/// While a newer frame is being made the older one stays, dimmed, under a note.
class StillView : public QWidget {
    Q_OBJECT

public:
    explicit StillView(QWidget* parent = nullptr);

    void setStill(const QImage& still);
    const QImage& still() const { return m_still; }

    /// Why there is no frame; empty takes it back.
    void setFault(const QString& fault);
    /// Shown while a frame is being made; empty when none is.
    void setBusyNote(const QString& note);
    /// One pixel of the frame for one of the screen.
    void setActualSize(bool isActualSize);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF pictureRectangle() const;
    const QPixmap& scaledStill(QSize pixels);
    void drawFault(QPainter& painter) const;
    void drawBusyNote(QPainter& painter, const QRectF& picture) const;

    QImage m_still;
    QPixmap m_scaled; // `m_still` at the size shown last
    QString m_fault;
    QString m_busyNote;
    bool m_isActualSize = false;
};

}
