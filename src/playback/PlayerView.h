// The picture of a player as a widget: aspect kept, upright, bars in the palette's window colour.
#pragma once

#include "playback/Player.h"

#include <QPointer>
#include <QRectF>
#include <QWidget>

namespace pointloom::playback {

/// A player opens files only once it has a view to show them, and has at most one. Children of the view
/// lie over the picture. Either of the two may be destroyed first.
class PlayerView : public QWidget {
    Q_OBJECT

public:
    enum class Rendering {
        Automatic, // by the graphics card when there is one; POINTLOOM_RENDERING=software or =opengl decides
        Software,
        OpenGl,
    };

    /// Throws PlaybackError.
    explicit PlayerView(Player& player, Rendering rendering = Rendering::Automatic,
                        QWidget* parent = nullptr);
    ~PlayerView() override;

    /// The way it draws now: never Automatic.
    Rendering rendering() const { return m_rendering; }

    /// Where the picture stands, in points of this widget; all of the widget while there is no picture.
    QRectF videoRect() const;

Q_SIGNALS:
    void videoRectChanged(const QRectF& videoRect);

    /// The picture could be drawn by the graphics card at first and now in no way; `reason` is a sentence for
    /// a person.
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
    Rendering m_rendering = Rendering::Software;
    QWidget* m_surface = nullptr; // a child; null when the picture cannot be drawn
};

}
