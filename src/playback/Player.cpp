#include "playback/Player.h"

#include "playback/MpvCalls.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <mpv/client.h>
#include <QFile>
#include <string_view>
#include <utility>

namespace pointloom::playback {

namespace {

// libmpv takes the first frame from 5 ms before the time it is given; at 240 frames a second that is the
// frame before. This leaves 1 ms, enough for times that were rounded.
constexpr double seekBias = 0.004; // seconds

// Opening a file is over when its first frame is there, like any other jump.
constexpr Jump toFirstFrame{Jump::Kind::Exact, 0};

QString fileName(const QString& path) {
    return path.section(u'/', -1);
}

// Absolute, so that no name can be taken for an option, an address or one of libmpv's own protocols.
QString absolutePath(const QString& path) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(QFile::encodeName(path).toStdString(), error);
    return QFile::decodeName(QByteArray::fromStdString(absolute.string()));
}

}

Player::Player(Sound sound, QObject* parent)
    : QObject(parent)
    , m_handle(startMpv(sound)) {
    mpv_observe_property(handle(), noReply, "eof-reached", MPV_FORMAT_FLAG);
    // Only that they change; their values are asked for when the answer is sure to be new.
    for (const char* property : {"time-pos", "duration", "video-params"})
        mpv_observe_property(handle(), noReply, property, MPV_FORMAT_NONE);
    if (sound == Sound::Device)
        mpv_observe_property(handle(), noReply, "current-ao", MPV_FORMAT_STRING);
    connect(&m_watch, &SourceWatch::lost, this, [this](media::MediaFault fault) {
        const QString reason = fault == media::MediaFault::replaced
                                   ? QStringLiteral("was changed by another program")
                                   : QStringLiteral("was moved or deleted");
        fail(QStringLiteral("“%1” can no longer be played: it %2.").arg(fileName(m_path), reason), fault);
    });
    constexpr std::chrono::seconds patience(10);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    // libmpv passes over a step back in silence when the picture's decoder has given up.
    m_patience.callOnTimeout(this, [this] { request(Request::LandedTime, "time-pos"); });
    mpv_set_wakeup_callback(handle(), &Player::postWakeup, this);
}

Player::~Player() {
    Q_EMIT aboutToBeDestroyed();
    mpv_set_wakeup_callback(handle(), nullptr, nullptr);
}

void Player::load(const QString& path) {
    closeFile();
    m_path = absolutePath(path);
    const std::optional<PlaybackFault> fault =
        path.isEmpty() ? PlaybackFault{media::MediaFault::missing, QStringLiteral("no file is named")}
                       : faultOfFile(m_path);
    if (fault) {
        // Signals come from the event loop alone.
        QMetaObject::invokeMethod(
            this,
            [this, fault = *fault, generation = m_generation] {
                if (generation == m_generation)
                    refuse(fault);
            },
            Qt::QueuedConnection);
        return;
    }
    m_stage = Stage::WaitingForRenderer;
    m_queue.begin(toFirstFrame);
    if (m_hasRenderer)
        open();
}

void Player::unload() {
    closeFile();
    setPlaying(false);
}

void Player::play() {
    if (m_stage == Stage::Empty)
        return;
    if (m_atEnd)
        seek(0);
    m_timeStandsForKeyframe = false;
    setPlaying(true);
    sendPause();
}

void Player::pause() {
    setPlaying(false);
    sendPause();
}

void Player::sendPause() {
    // Timed, no frame is shown before the one after it is there, which a seek would have to wait for.
    sendProperty(handle(), "untimed", !m_playing);
    sendProperty(handle(), "pause", !m_playing);
}

void Player::stepForward() {
    step(1);
}

void Player::stepBackward() {
    step(-1);
}

void Player::step(int frames) {
    if (m_stage != Stage::Loaded)
        return;
    pause();
    sendSteps(m_queue.requestSteps(frames));
}

void Player::seek(double seconds, SeekMode mode) {
    if (m_stage == Stage::Empty || !std::isfinite(seconds))
        return;
    const double latest = m_announced ? m_duration : seconds;
    const double target = std::clamp(seconds, 0.0, std::max(0.0, latest));
    m_atEnd = false;
    if (m_announced)
        setTime(target);
    const auto kind = mode == SeekMode::Exact ? Jump::Kind::Exact : Jump::Kind::Keyframe;
    if (const auto jump = m_queue.request({kind, target}))
        sendJump(*jump);
}

void Player::setSpeed(double speed) {
    m_speed = std::clamp(speed, minimumSpeed, maximumSpeed);
    sendProperty(handle(), "speed", m_speed);
}

void Player::setVolume(double volume) {
    constexpr double full = 100; // libmpv's scale, already shaped to the ear
    m_volume = std::clamp(volume, 0.0, 1.0);
    sendProperty(handle(), "volume", m_volume * full);
}

void Player::setMuted(bool muted) {
    m_muted = muted;
    sendProperty(handle(), "mute", muted);
}

void Player::setHardwareDecoding(bool enabled) {
    sendProperty(handle(), "hwdec", enabled ? "auto-safe" : "no");
}

void Player::setRotationHandled(bool handled) {
    sendProperty(handle(), "video-rotate", handled ? "0" : "no");
}

// Where somebody else brings the colours to the screen, pictures are passed on as they are: libmpv is told
// that they have those of the screen already.
void Player::setColorsHandled(bool handled) {
    sendProperty(handle(), "vf", handled ? "" : "format=gamma=bt.1886:primaries=bt.709:sig-peak=1");
}

void Player::attachRenderer() {
    m_hasRenderer = true;
    if (m_stage == Stage::WaitingForRenderer)
        open();
}

// libmpv gives a file up when nothing can draw it, so it is opened again for the next drawing end.
void Player::detachRenderer() {
    m_hasRenderer = false;
    if (m_stage != Stage::Opening && m_stage != Stage::Loaded)
        return;
    std::optional<Jump> resumed = m_queue.waiting();
    if (m_announced)
        resumed = Jump{Jump::Kind::Exact, m_time};
    m_stage = Stage::WaitingForRenderer;
    m_entry = 0;
    ++m_generation;
    m_patience.stop();
    m_queue.clear();
    m_queue.begin(toFirstFrame);
    if (resumed)
        m_queue.request(*resumed);
    sendCommand(handle(), {"stop"});
}

void Player::open() {
    m_stage = Stage::Opening;
    m_entry = 0;
    ++m_generation;
    m_watch.start(m_path);
    m_timeRequested = false;
    sendProperty(handle(), "vid", "auto");
    sendPause();
    sendCommand(handle(), {"loadfile", QFile::encodeName(m_path), "replace"}, idOf(Request::Load));
}

void Player::closeFile() {
    m_watch.stop();
    m_patience.stop();
    m_queue.clear();
    ++m_generation;
    m_entry = 0;
    m_announced = false;
    m_atEnd = false;
    m_endIsReported = false;
    m_timeRequested = false;
    m_timeStandsForKeyframe = false;
    m_storedSize = {};
    m_storedRotation = 0;
    m_transfer.clear();
    updateLight(0);
    if (m_stage == Stage::Empty)
        return;
    m_stage = Stage::Empty;
    sendCommand(handle(), {"stop"});
    setTime(0);
    m_duration = 0;
    updateSize();
}

void Player::refuse(const PlaybackFault& fault) {
    fail(QStringLiteral("“%1” cannot be opened: %2.").arg(fileName(m_path), fault.reason), fault.kind);
}

void Player::fail(const QString& message, media::MediaFault fault) {
    unload();
    Q_EMIT failed(message, fault);
}

void Player::sendJump(Jump jump) {
    if (m_stage != Stage::Loaded)
        return;
    ++m_generation;
    m_timeRequested = false;
    m_timeStandsForKeyframe = jump.kind == Jump::Kind::Keyframe && !m_playing;
    m_patience.start();
    if (jump.kind == Jump::Kind::StepBack) {
        sendCommand(handle(), {"frame-back-step"}, idOf(Request::Jump));
        return;
    }
    // Eight frames are more than any codec reorders.
    const double startFurtherBack = jump.fromFurtherBack ? std::max(1.0, 8 * m_frameDuration) : 0;
    if (std::exchange(m_startFurtherBack, startFurtherBack) != startFurtherBack)
        sendProperty(handle(), "hr-seek-demuxer-offset", startFurtherBack);
    const char* mode = jump.kind == Jump::Kind::Exact ? "absolute+exact" : "absolute+keyframes";
    constexpr int decimals = 6;
    sendCommand(handle(), {"seek", QByteArray::number(jump.time + seekBias, 'f', decimals), mode},
                idOf(Request::Jump));
}

void Player::sendSteps(int frames) {
    if (frames < 0)
        sendJump({Jump::Kind::StepBack, 0});
    if (frames > 0)
        m_timeStandsForKeyframe = false;
    for (int i = 0; i < frames; ++i)
        sendCommand(handle(), {"frame-step"});
}

// The jump under way has ended: starts what waited for it.
void Player::goOn() {
    m_patience.stop();
    m_queue.finish();
    if (const auto jump = m_queue.takeWaiting())
        sendJump(*jump);
    else
        sendSteps(m_queue.takeSteps());
}

void Player::updateSize() {
    const QSize size = m_storedRotation % 180 == 0 ? m_storedSize : m_storedSize.transposed();
    if (size == m_size)
        return;
    m_size = size;
    Q_EMIT sizeChanged(size);
}

void Player::setTime(double seconds) {
    if (seconds == m_time)
        return;
    m_time = seconds;
    Q_EMIT timeChanged(seconds);
}

void Player::setHasSoundDevice(bool isThere) {
    if (std::exchange(m_hasSoundDevice, isThere) != isThere)
        Q_EMIT soundDeviceChanged(isThere);
}

void Player::setPlaying(bool playing) {
    if (playing == m_playing)
        return;
    m_playing = playing;
    Q_EMIT playingChanged(playing);
}

}
