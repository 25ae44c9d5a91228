// The editor's playback: plays one MP4 or MOV file, or several as one recording, seeks to exact frames and
// steps through them.
//
// libmpv does the work on threads of its own. Nothing here waits for it: every call returns at once, and its
// outcome arrives as a signal from the event loop of the main thread, to which the player belongs.
#pragma once

#include "playback/CopyTrack.h"
#include "playback/Mpv.h"
#include "playback/SeekQueue.h"
#include "playback/SourceFile.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <QObject>
#include <QSize>
#include <QString>
#include <QTimer>

namespace pointloom::playback {

class Player : public QObject {
    Q_OBJECT

public:
    enum class SeekMode {
        exact,    // the first frame at or after the time, or the last of the file
        keyframe, // the key frame at or before the time: quick, for scrubbing
    };

    static constexpr double minimumSpeed = 0.25;
    static constexpr double maximumSpeed = 4.0;

    /// Throws PlaybackError. Sets LC_NUMERIC to "C" for the process (see `startMpv`).
    explicit Player(Sound sound = Sound::device, QObject* parent = nullptr);
    ~Player() override;

    /// Opens a file in place of the present one, showing its first frame; `fileLoaded` or `failed` follows.
    /// Paths are taken as files' names, never as addresses. Waits for a view (PlayerView) to exist.
    void load(const media::Recording& recording);
    void unload();

    /// Shows the pictures of a small copy, which has the file's frames at the file's times, in place of the
    /// file's own, from the frame that is shown on; its sound stays. Until another file is loaded; an empty
    /// path brings its own pictures back. Nothing happens when the copy cannot be played.
    void showCopy(const QString& path);
    bool showsCopy() const { return m_copy.isShown(); }

    /// True between `fileLoaded` and the next `load`, `unload` or `failed`.
    bool isLoaded() const { return m_announced; }
    const QString& path() const { return m_recording.first(); }
    const media::Recording& recording() const { return m_recording; }

    /// Plays; at the end of the file from its beginning. Before `fileLoaded`, playback starts with that
    /// signal.
    void play();
    void pause();
    bool isPlaying() const { return m_playing; }

    /// Goes one frame forward or back; pauses. A few quick steps in a row add up.
    void stepForward();
    void stepBackward();

    /// Goes to a time, in seconds on the source's timeline, limited to [0, duration()]. While one seek is
    /// under way only the newest further one is kept, so it may be called at every move of the mouse.
    /// In a copy every seek is exact.
    void seek(double seconds, SeekMode mode = SeekMode::exact);
    bool isSeeking() const { return m_queue.busy(); }

    /// Seconds on the source's timeline, whose zero is not necessarily the first frame: the time of the
    /// frame that is shown or, while a seek is under way or after one to a key frame, the requested time.
    double time() const { return m_time; }

    /// Seconds from zero of the timeline to the file's end; 0 when nothing is loaded.
    double duration() const { return m_duration; }

    /// Seconds from one frame to the next, nominal; 0 when the file does not say.
    double frameDuration() const { return m_frameDuration; }

    /// Upright picture in square pixels; empty when nothing is loaded.
    QSize size() const { return m_size; }

    /// Limited to [minimumSpeed, maximumSpeed]; the sound keeps its pitch.
    void setSpeed(double speed);
    double speed() const { return m_speed; }

    /// Limited to [0, 1], in steps of perceived loudness.
    void setVolume(double volume);
    double volume() const { return m_volume; }

    void setMuted(bool muted);
    bool isMuted() const { return m_muted; }

    /// False when a file with sound is open and the desktop has nothing to play it on.
    bool hasSoundDevice() const { return m_hasSoundDevice; }

    /// Off at first. When on, hardware decoders that libmpv knows to be safe are tried before the processor.
    void setHardwareDecoding(bool enabled);

Q_SIGNALS:
    void timeChanged(double seconds);
    void playingChanged(bool playing);
    void sizeChanged(QSize size);
    void soundDeviceChanged(bool isThere);

    /// The first frame can be shown; time, duration and size are known.
    void fileLoaded();

    /// The file could not be opened or can no longer be played, and is unloaded; `message` is an English
    /// sentence that names the file and the reason, `fault` its kind for translated messages.
    void failed(const QString& message, pointloom::media::MediaFault fault);

    void sourceLightChanged();

    /// Playback came to the end of the file by itself and paused at the last frame.
    void endReached();

    /// A seek or a step back has ended at `seconds`, which is the time of the frame that is shown.
    void seeked(double seconds);

    /// A renderer detaches from the player in a direct connection to this.
    void aboutToBeDestroyed();

private:
    friend class RenderContext;
    friend class SoftwareSurface;

    enum class Stage { empty, waitingForRenderer, opening, loaded };
    enum class Request : std::uint8_t {
        none,
        load,
        seek,
        frameRate,
        duration,
        width,
        height,
        rotation,
        transfer,
        primaries,
        peak,
        time,
        timeAfterSeek,
    };

    mpv_handle* handle() const { return m_handle.get(); }
    int storedRotation() const { return m_storedRotation; }
    void setRotationHandled(bool handled);
    const std::optional<SourceLight>& sourceLight() const { return m_sourceLight; }
    void setColorsHandled(bool handled);
    void handleCopy();
    void attachRenderer();
    void detachRenderer();

    void findAddress();
    void open();
    void closeFile();
    void refuse(const PlaybackFault& fault);
    void refuseSoon(const PlaybackFault& fault);
    void fail(const QString& message, media::MediaFault fault);

    void sendPause();
    void step(int frames);
    void sendSeek(Seek next);
    void sendSteps(int frames);
    bool isTooLate(double time) const;
    void startWaiting();
    void endSeek(double time);
    void handleFirstFrame(double time);
    void announceFile(double time);

    static void postWakeup(void* self);
    void drainEvents();
    void handleEvent(const mpv_event& event);
    void handleReply(const mpv_event& event);
    void handleFileEnd(const mpv_event& event);
    void handlePropertyChange(const mpv_event& event);
    void updateEnd();
    void handleSeekToEnd(double time);

    void request(Request what, const char* property);
    void requestVideoParameters();
    std::uint64_t idOf(Request what) const;
    bool concernsOurFile() const;

    void updateSize();
    void updateLight(double peak);
    void setTime(double seconds);
    void setPlaying(bool playing);
    void setHasSoundDevice(bool isThere);

    MpvHandle m_handle;
    std::atomic<bool> m_wakeupPosted = false;
    SourceWatch m_watch;
    CopyTrack m_copy;
    SeekQueue m_queue;
    QTimer m_seekTimeout; // for a seek whose end is not reported

    Stage m_stage = Stage::empty;
    media::Recording m_recording{QString()};
    QByteArray m_address;                     // for libmpv; empty until the places of several files are known
    std::uint64_t m_generation = 0;           // of the file and seek that answers belong to
    std::int64_t m_entry = 0;                 // libmpv's number for our file, 0 before it is known
    std::int64_t m_startedEntry = 0;          // of the entry that it is playing
    int m_storedRotation = 0;                 // degrees clockwise, for drawing in software
    QByteArray m_transfer;                    // as libmpv names it
    QByteArray m_primaries;                   // as libmpv names them
    std::optional<SourceLight> m_sourceLight; // for drawing in software
    QSize m_storedSize;                       // square pixels, before turning
    QSize m_size;

    bool m_hasRenderer = false;
    bool m_announced = false; // fileLoaded was emitted for the present file
    bool m_atEnd = false;
    bool m_endIsReported = false; // by libmpv, perhaps too late
    bool m_showsKeyframe = false; // the key frame before m_time is shown
    bool m_timeRequested = false;
    bool m_playing = false;
    bool m_muted = false;
    bool m_hasSoundDevice = true;
    double m_time = 0;
    double m_duration = 0;
    double m_measuredEnd = 0;      // seconds; only of a file that starts late
    double m_firstTime = 0;        // of the first frame
    double m_frameDuration = 0;    // seconds, nominal; 0 when the file does not say
    double m_startFurtherBack = 0; // seconds before its target that a seek begins to decode, as last set
    double m_speed = 1;
    double m_volume = 1;
};

}
