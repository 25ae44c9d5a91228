// The picture of a player as a widget: aspect kept, upright, bars in the palette's window colour.
#pragma once

#include "playback/Player.h"

#include <QPointer>
#include <QRect>
#include <QRectF>
#include <QWidget>

namespace pointloom::playback {

/// The largest rectangle of the picture's shape in the middle of `area`, in whole points so that the
/// picture's edges are sharp. All of `area` when the picture has no size.
QRect fitPicture(QSize picture, QRect area);

/// A player opens files only once it has a view to show them, and has at most one. Children of the view
/// are drawn over the picture. Either of the two may be destroyed first.
class PlayerView : public QWidget {
    Q_OBJECT

public:
    enum class Rendering {
        automatic, // by the graphics card when there is one; POINTLOOM_RENDERING=software or =opengl
                   // overrides
        software,
        openGl,
    };

    /// Throws PlaybackError.
    explicit PlayerView(Player& player, Rendering rendering = Rendering::automatic,
                        QWidget* parent = nullptr);
    ~PlayerView() override;

    /// The way it draws now: never `automatic`.
    Rendering rendering() const { return m_rendering; }

    /// The picture's place in points of this widget; all of the widget while there is no picture.
    QRectF videoRect() const;

Q_SIGNALS:
    void videoRectChanged(const QRectF& videoRect);

    /// The picture can be drawn neither by the graphics card nor in software; `reason` is a sentence for the
    /// user.
    void unavailable(const QString& reason);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void showOpenGl();
    void showSoftware();
    void fallBackToSoftware();
    void adoptSurface(QWidget* surface);
    void placeSurface();

    QPointer<Player> m_player;
    QSize m_pictureSize; // pixels, upright
    Rendering m_rendering = Rendering::software;
    QWidget* m_surface = nullptr; // a child; null when the picture cannot be drawn
};

}
