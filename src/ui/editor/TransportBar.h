// Bar under the picture: play, step, speed, sound, and the time of the playhead.
#pragma once

#include "ui/editor/EditorPlayback.h"
#include "ui/editor/TimeField.h"

#include <QLabel>
#include <QMenu>
#include <QSlider>
#include <QToolButton>
#include <QWidget>

namespace pointloom {

class TransportBar : public QWidget {
    Q_OBJECT

public:
    /// `playback` outlives this.
    TransportBar(const UiContext& context, EditorPlayback& playback, QWidget* parent = nullptr);

    /// Lets the user type the time to go to.
    void typeTime();

    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void previewFrameRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QToolButton* makeButton(const QString& icon, L10nKey text, Command command);
    void makeSpeedMenu();
    void showPlaying();
    void showTotal();
    void showSound();
    void showSpeed();
    void showQuickPictures();
    void fit();

    UiContext m_context;
    Bindings m_bindings; // before the parts that are made with it
    EditorPlayback& m_playback;
    QToolButton* m_start;
    QToolButton* m_back;
    QToolButton* m_play;
    QToolButton* m_forward;
    QToolButton* m_end;
    TimeField* m_time;
    QLabel* m_total;
    QLabel* m_quickPictures;      // shown while a copy is being made
    QToolButton* m_playsOnlyKept; // shown where something is left out
    QToolButton* m_speed;
    QMenu* m_speedMenu;
    QToolButton* m_mute;
    QSlider* m_volume;
    QToolButton* m_preview;
};

}
