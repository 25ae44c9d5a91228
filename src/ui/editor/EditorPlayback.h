// Keeps the session's playhead and the player in step. There is no player before the first video, and none
// at all where libmpv cannot start: the playhead still moves.
#pragma once

#include "playback/Player.h"
#include "ui/common/UiContext.h"
#include "ui/editor/QuickPictures.h"
#include "ui/style/Bindings.h"

#include <memory>
#include <QObject>

namespace pointloom {

class EditorPlayback : public QObject {
    Q_OBJECT

public:
    explicit EditorPlayback(const UiContext& context, QObject* parent = nullptr);
    ~EditorPlayback() override;

    /// Opens the session's video, now and whenever it changes. Called once, after the signals are connected.
    void start();

    /// Null before the first video and where playback is not possible.
    playback::Player* player() const { return m_player.get(); }
    bool isLoaded() const { return m_player && m_player->isLoaded(); }

    /// Seconds that a frame lasts, nominal; a 25th where no video says otherwise.
    double frameDuration() const;

    /// Gives up playback: the picture cannot be shown.
    void giveUp(const QString& reason);

    /// Opens the session's video again at the playhead, after a failure or when its file has changed.
    void reload();

    /// Seconds of the source, limited to the video.
    void seek(double seconds, bool exact = true);
    void seekBy(double seconds);
    void goToEnd();

    void togglePlaying();
    void play();
    void pause();
    void stepFrames(int frames);

    /// Plays; while it plays, at twice the speed, until it stops.
    void playFaster();
    /// 0.25..4, until another video is opened.
    void setSpeed(double speed);
    /// The speed at which it plays now.
    double speed() const { return m_speed; }
    /// When on, playback jumps over what the session's choice of parts leaves out. Off at first.
    void setPlaysOnlyKept(bool enabled);
    bool playsOnlyKept() const { return m_playsOnlyKept; }
    /// 0..1
    void setVolume(double volume);
    double volume() const { return m_volume; }
    void setMuted(bool muted);
    bool isMuted() const { return m_isMuted; }
    /// False when there is sound and nothing to play it on.
    bool hasSoundDevice() const { return !m_player || m_player->hasSoundDevice(); }
    void setHardwareDecoding(bool enabled);
    const QuickPictures& quickPictures() const { return m_quickPictures; }
    void setQuickPictures(bool enabled) { m_quickPictures.setEnabled(enabled); }

Q_SIGNALS:
    /// The receiver creates a PlayerView in a direct connection, or calls `giveUp`.
    void playerStarted(playback::Player& player);
    /// A video is being opened: messages about an earlier one are obsolete.
    void opening();
    void loaded();
    /// The session's video cannot be played; `message` is the player's own sentence.
    void failed(const QString& message, pointloom::media::MediaFault fault);
    void unavailable(const QString& reason);
    void soundChanged();
    void speedChanged();
    void playsOnlyKeptChanged();

private:
    void openVideo();
    bool startPlayer();
    void followPlayer();
    void publishTime();
    void followSession();
    void skipWhatIsLeftOut(bool begins);
    void applySpeed(double speed);

    UiContext m_context;
    std::unique_ptr<playback::Player> m_player;
    QuickPictures m_quickPictures;
    QString m_whyUnavailable;    // empty as long as nothing speaks against a player
    bool m_isPublishing = false; // what changes in the session comes from the player
    double m_chosenSpeed = 1;
    double m_speed = 1;
    double m_volume = 1;
    bool m_isMuted = false;
    bool m_playsOnlyKept = false;
    bool m_hardwareDecoding = false;
    Bindings m_bindings;
};

}
