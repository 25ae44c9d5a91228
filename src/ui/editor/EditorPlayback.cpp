#include "ui/editor/EditorPlayback.h"

#include "ui/common/Preferences.h"

#include <algorithm>
#include <QScopedValueRollback>
#include <utility>

namespace pointloom {

namespace {

constexpr double assumedFrame = 1.0 / 25; // seconds, while no video says otherwise

}

EditorPlayback::EditorPlayback(const UiContext& context, QObject* parent)
    : QObject(parent)
    , m_context(context)
    , m_quickPictures(context)
    , m_hardwareDecoding(Preferences::isSet(context.defaults, Preferences::hardwareDecodingKey)) {
    connect(&m_quickPictures, &QuickPictures::found, this, [this](const QString& copy) {
        if (m_player)
            m_player->showCopy(copy);
    });
    AppState& state = m_context.state;
    m_bindings.watch(state.currentTime, [this] { followSession(); });
    m_bindings.watch(state.isPlaying, [this] {
        const bool playing = m_context.state.isPlaying;
        if (!playing)
            applySpeed(m_chosenSpeed);
        if (m_isPublishing || !m_player || m_player->isPlaying() == playing)
            return;
        playing ? m_player->play() : m_player->pause();
    });
}

EditorPlayback::~EditorPlayback() = default;

void EditorPlayback::start() {
    m_bindings.watch(m_context.state.videoURL, [this] {
        setSpeed(1);
        openVideo();
    });
}

double EditorPlayback::frameDuration() const {
    const double nominal = isLoaded() ? m_player->frameDuration() : 0;
    return nominal > 0 ? nominal : assumedFrame;
}

void EditorPlayback::reload() {
    openVideo();
}

void EditorPlayback::openVideo() {
    const auto& url = m_context.state.videoURL.value();
    m_quickPictures.close();
    Q_EMIT opening();
    if (!url) {
        if (m_player)
            m_player->unload();
        return;
    }
    if (!startPlayer())
        return;
    m_player->pause();
    m_player->load(*m_context.state.recording());
    if (const double time = m_context.state.currentTime; time > 0)
        m_player->seek(time);
}

bool EditorPlayback::startPlayer() {
    if (m_player)
        return true;
    if (!m_whyUnavailable.isEmpty()) {
        Q_EMIT unavailable(m_whyUnavailable);
        return false;
    }
    try {
        m_player = std::make_unique<playback::Player>();
        m_player->setHardwareDecoding(m_hardwareDecoding);
        m_player->setSpeed(m_speed);
        m_player->setVolume(m_volume);
        m_player->setMuted(m_isMuted);
        followPlayer();
        Q_EMIT playerStarted(*m_player);
    } catch (const playback::PlaybackError& error) {
        giveUp(QString::fromUtf8(error.what()));
    }
    return m_player != nullptr;
}

void EditorPlayback::giveUp(const QString& reason) {
    m_player.reset();
    m_whyUnavailable = reason;
    Q_EMIT unavailable(reason);
}

void EditorPlayback::followPlayer() {
    using playback::Player;
    Player* player = m_player.get();
    connect(player, &Player::timeChanged, this, &EditorPlayback::publishTime);
    connect(player, &Player::playingChanged, this, [this](bool playing) {
        {
            const QScopedValueRollback publishing(m_isPublishing, true);
            m_context.state.isPlaying = playing;
        }
        skipWhatIsLeftOut(true);
    });
    connect(player, &Player::fileLoaded, this, [this] {
        AppState& state = m_context.state;
        if (state.videoDuration <= 0)
            state.videoDuration = m_player->duration();
        if (state.videoWidth < 1 || state.videoHeight < 1) {
            state.videoWidth = m_player->size().width();
            state.videoHeight = m_player->size().height();
        }
        publishTime();
        if (const auto recording = state.recording())
            m_quickPictures.open(*recording); // not before the first picture is shown
        Q_EMIT loaded();
    });
    connect(player, &Player::failed, &m_quickPictures, &QuickPictures::close);
    connect(player, &Player::failed, this, &EditorPlayback::failed);
    connect(player, &Player::soundDeviceChanged, this, &EditorPlayback::soundChanged);
}

void EditorPlayback::publishTime() {
    // A file that goes away leaves the playhead where it was.
    if (!isLoaded())
        return;
    {
        const QScopedValueRollback publishing(m_isPublishing, true);
        m_context.state.currentTime = m_player->time();
    }
    skipWhatIsLeftOut(false);
}

// Goes by the frame after the shown one. After the last part playback pauses; when it `begins` there, it
// begins with the first part.
void EditorPlayback::skipWhatIsLeftOut(bool begins) {
    constexpr double rounding = 0.001; // seconds, of the player's times
    const AppState& state = m_context.state;
    const auto& parts = state.keptParts();
    if (!m_playsOnlyKept || !state.isPlaying || !state.parts.value().isMade() || parts.empty() || !isLoaded())
        return;
    const double next = m_player->time() + frameDuration() + rounding;
    const TimeSpan* part = partFrom(parts, next);
    if (!part && !begins)
        m_player->pause();
    else if (!part)
        m_player->seek(parts.front().start);
    else if (part->start > next)
        m_player->seek(part->start);
}

void EditorPlayback::followSession() {
    if (!m_isPublishing && m_player)
        m_player->seek(m_context.state.currentTime);
}

void EditorPlayback::seek(double seconds, bool exact) {
    const double duration = m_context.state.videoDuration;
    const double target = std::clamp(seconds, 0.0, duration > 0 ? duration : std::max(0.0, seconds));
    if (isLoaded())
        m_player->seek(target,
                       exact ? playback::Player::SeekMode::exact : playback::Player::SeekMode::keyframe);
    else
        m_context.state.currentTime = target;
}

void EditorPlayback::seekBy(double seconds) {
    seek(m_context.state.currentTime + seconds);
}

void EditorPlayback::goToEnd() {
    seek(m_context.state.videoDuration);
}

void EditorPlayback::togglePlaying() {
    m_context.state.isPlaying ? pause() : play();
}

void EditorPlayback::play() {
    if (isLoaded())
        m_player->play();
}

void EditorPlayback::pause() {
    if (isLoaded())
        m_player->pause();
}

void EditorPlayback::stepFrames(int frames) {
    if (!isLoaded()) {
        seekBy(frames * frameDuration());
        return;
    }
    for (int step = 0; step < std::abs(frames); ++step)
        frames > 0 ? m_player->stepForward() : m_player->stepBackward();
}

void EditorPlayback::playFaster() {
    if (m_context.state.isPlaying)
        applySpeed(m_speed < 1 ? 1 : m_speed * 2);
    else
        play();
}

void EditorPlayback::setSpeed(double speed) {
    m_chosenSpeed = speed;
    applySpeed(speed);
}

void EditorPlayback::applySpeed(double speed) {
    const double possible = std::clamp(speed, playback::Player::minimumSpeed, playback::Player::maximumSpeed);
    if (std::exchange(m_speed, possible) == possible)
        return;
    if (m_player)
        m_player->setSpeed(m_speed);
    Q_EMIT speedChanged();
}

void EditorPlayback::setPlaysOnlyKept(bool enabled) {
    m_playsOnlyKept = enabled;
    skipWhatIsLeftOut(true);
    Q_EMIT playsOnlyKeptChanged();
}

void EditorPlayback::setVolume(double volume) {
    m_volume = std::clamp(volume, 0.0, 1.0);
    m_isMuted = false;
    if (m_player) {
        m_player->setVolume(m_volume);
        m_player->setMuted(false);
    }
    Q_EMIT soundChanged();
}

void EditorPlayback::setMuted(bool muted) {
    m_isMuted = muted;
    if (m_player)
        m_player->setMuted(muted);
    Q_EMIT soundChanged();
}

void EditorPlayback::setHardwareDecoding(bool enabled) {
    m_hardwareDecoding = enabled;
    if (m_player)
        m_player->setHardwareDecoding(enabled);
}

}
