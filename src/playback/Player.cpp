#include "playback/Player.h"

#include "playback/SourceAddress.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <mpv/client.h>
#include <QFile>
#include <utility>

namespace pointloom::playback {

namespace {

// libmpv takes the first frame from 5 ms before the time it is given; at 240 frames a second that is the
// frame before. This leaves 1 ms, enough for times that were rounded.
constexpr double seekBias = 0.004; // seconds

// Opening a file ends when its first frame is decoded, as a seek does.
constexpr Seek toFirstFrame{Seek::Kind::exact, 0};

QString fileName(const QString& path) {
    return path.section(u'/', -1);
}

}

Player::Player(Sound sound, QObject* parent)
    : QObject(parent)
    , m_handle(startMpv(sound))
    , m_watch([this](const QString& path, media::MediaFault fault) {
        const QString reason = fault == media::MediaFault::replaced
                                   ? QStringLiteral("was changed by another program")
                                   : QStringLiteral("was moved or deleted");
        fail(QStringLiteral("“%1” can no longer be played: it %2.").arg(fileName(path), reason), fault);
    })
    , m_copy(handle(), [this] { handleCopy(); }) {
    mpv_observe_property(handle(), noReply, "eof-reached", MPV_FORMAT_FLAG);
    // Observed without their values, which are requested when the answer is sure to be new.
    for (const char* property : {"time-pos", "duration", "video-params"})
        mpv_observe_property(handle(), noReply, property, MPV_FORMAT_NONE);
    if (sound == Sound::device)
        mpv_observe_property(handle(), noReply, "current-ao", MPV_FORMAT_STRING);
    m_seekTimeout.setSingleShot(true);
    m_seekTimeout.setInterval(std::chrono::seconds(10));
    // libmpv ignores a step back without an answer when the video's decoder has failed.
    m_seekTimeout.callOnTimeout(this, [this] { request(Request::timeAfterSeek, "time-pos"); });
    mpv_set_wakeup_callback(handle(), &Player::postWakeup, this);
}

Player::~Player() {
    Q_EMIT aboutToBeDestroyed();
    mpv_set_wakeup_callback(handle(), nullptr, nullptr);
}

void Player::load(const media::Recording& recording) {
    closeFile();
    m_recording = absolute(recording);
    if (recording.first().isEmpty()) {
        refuseSoon({media::MediaFault::missing, QStringLiteral("no file is named")});
        return;
    }
    if (const auto fault = faultOfFiles(m_recording)) {
        refuseSoon(*fault);
        return;
    }
    m_stage = Stage::waitingForRenderer;
    m_queue.begin(toFirstFrame);
    findAddress();
    if (m_hasRenderer)
        open();
}

// Signals are emitted from the event loop only.
void Player::refuseSoon(const PlaybackFault& fault) {
    QMetaObject::invokeMethod(
        this,
        [this, fault, generation = m_generation] {
            if (generation == m_generation)
                refuse(fault);
        },
        Qt::QueuedConnection);
}

void Player::findAddress() {
    m_address.clear();
    if (!m_recording.isSplit()) {
        m_address = QFile::encodeName(path());
        return;
    }
    const auto take = [this, generation = m_generation](const QByteArray& address,
                                                        const PlaybackFault& fault) {
        if (m_generation != generation)
            return;
        m_address = address;
        if (address.isEmpty())
            refuse(fault);
        else if (m_hasRenderer)
            open();
    };
    playback::findAddress(m_recording, this, take);
}

void Player::unload() {
    closeFile();
    setPlaying(false);
}

void Player::showCopy(const QString& path) {
    m_copy.setPath(path);
}

// Paused, libmpv goes on showing the frame of the track before.
void Player::handleCopy() {
    if (!m_playing)
        seek(m_time);
}

void Player::play() {
    if (m_stage == Stage::empty)
        return;
    if (m_atEnd)
        seek(0);
    m_showsKeyframe = false;
    setPlaying(true);
    sendPause();
}

void Player::pause() {
    setPlaying(false);
    sendPause();
}

void Player::sendPause() {
    // With timing, a frame is shown only once the next one is decoded, for which a seek would have to wait.
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
    if (m_stage != Stage::loaded)
        return;
    pause();
    sendSteps(m_queue.requestSteps(frames));
}

void Player::seek(double seconds, SeekMode mode) {
    if (m_stage == Stage::empty || !std::isfinite(seconds))
        return;
    const double latest = m_announced ? m_duration : seconds;
    const double target = std::clamp(seconds, 0.0, std::max(0.0, latest));
    m_atEnd = false;
    if (m_announced)
        setTime(target);
    const auto kind = mode == SeekMode::exact || m_copy.isShown() ? Seek::Kind::exact : Seek::Kind::keyframe;
    if (const auto next = m_queue.request({kind, target}))
        sendSeek(*next);
}

void Player::setSpeed(double speed) {
    m_speed = std::clamp(speed, minimumSpeed, maximumSpeed);
    sendProperty(handle(), "speed", m_speed);
}

void Player::setVolume(double volume) {
    constexpr double full = 100; // libmpv's scale of loudness
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

// When the view converts colours itself, frames are passed on unchanged: libmpv is told that they have the
// screen's colours already.
void Player::setColorsHandled(bool handled) {
    sendProperty(handle(), "vf", handled ? "" : "format=gamma=bt.1886:primaries=bt.709:sig-peak=1");
}

void Player::attachRenderer() {
    m_hasRenderer = true;
    if (m_stage == Stage::waitingForRenderer)
        open();
}

// libmpv closes a file when nothing can draw it, so it is opened again for the next renderer.
void Player::detachRenderer() {
    m_hasRenderer = false;
    if (m_stage != Stage::opening && m_stage != Stage::loaded)
        return;
    std::optional<Seek> resumed = m_queue.waiting();
    if (m_announced)
        resumed = Seek{Seek::Kind::exact, m_time};
    m_stage = Stage::waitingForRenderer;
    m_copy.setFileIsOpen(false);
    m_entry = 0;
    ++m_generation;
    m_seekTimeout.stop();
    m_queue.clear();
    m_queue.begin(toFirstFrame);
    if (resumed)
        m_queue.request(*resumed);
    sendCommand(handle(), {"stop"});
}

void Player::open() {
    // libmpv would give a copy that it is still opening to the file that comes after.
    if (m_address.isEmpty() || m_copy.isBeingAdded())
        return;
    m_stage = Stage::opening;
    m_entry = 0;
    ++m_generation;
    m_watch.start(m_recording);
    m_timeRequested = false;
    sendProperty(handle(), "vid", "auto");
    sendPause();
    // A list of files needs another demuxer, which follows references; the files were found to be MP4 or MOV.
    sendProperty(handle(), "demuxer", m_recording.isSplit() ? "" : "lavf");
    sendProperty(handle(), "access-references", m_recording.isSplit());
    sendCommand(handle(), {"loadfile", m_address, "replace"}, idOf(Request::load));
}

void Player::closeFile() {
    m_watch.stop();
    m_copy.setFileIsOpen(false);
    m_copy.setPath({});
    m_seekTimeout.stop();
    m_queue.clear();
    ++m_generation;
    m_entry = 0;
    m_announced = false;
    m_atEnd = false;
    m_endIsReported = false;
    m_timeRequested = false;
    m_showsKeyframe = false;
    m_storedSize = {};
    m_storedRotation = 0;
    m_transfer.clear();
    updateLight(0);
    if (m_stage == Stage::empty)
        return;
    m_stage = Stage::empty;
    sendCommand(handle(), {"stop"});
    setTime(0);
    m_duration = 0;
    m_measuredEnd = 0;
    updateSize();
}

void Player::refuse(const PlaybackFault& fault) {
    fail(QStringLiteral("“%1” cannot be opened: %2.").arg(fileName(path()), fault.reason), fault.kind);
}

void Player::fail(const QString& message, media::MediaFault fault) {
    unload();
    Q_EMIT failed(message, fault);
}

void Player::sendSeek(Seek next) {
    if (m_stage != Stage::loaded)
        return;
    ++m_generation;
    m_timeRequested = false;
    m_showsKeyframe = next.kind == Seek::Kind::keyframe && !m_playing;
    m_seekTimeout.start();
    if (next.kind == Seek::Kind::stepBack) {
        sendCommand(handle(), {"frame-back-step"}, idOf(Request::seek));
        return;
    }
    // Eight frames are more than any codec reorders.
    const double startFurtherBack = next.fromFurtherBack ? std::max(1.0, 8 * m_frameDuration) : 0;
    if (std::exchange(m_startFurtherBack, startFurtherBack) != startFurtherBack)
        sendProperty(handle(), "hr-seek-demuxer-offset", startFurtherBack);
    const char* mode = next.kind == Seek::Kind::exact ? "absolute+exact" : "absolute+keyframes";
    constexpr int decimals = 6;
    sendCommand(handle(), {"seek", QByteArray::number(next.time + seekBias, 'f', decimals), mode},
                idOf(Request::seek));
}

void Player::sendSteps(int frames) {
    if (frames < 0)
        sendSeek({Seek::Kind::stepBack, 0});
    if (frames > 0)
        m_showsKeyframe = false;
    for (int i = 0; i < frames; ++i)
        sendCommand(handle(), {"frame-step"});
}

// Ends the seek under way and starts what waited for it.
void Player::startWaiting() {
    m_seekTimeout.stop();
    m_queue.finish();
    if (const auto next = m_queue.takeWaiting())
        sendSeek(*next);
    else
        sendSteps(m_queue.takeSteps());
}

void Player::updateSize() {
    const QSize size = m_storedRotation % 180 == 0 ? m_storedSize : m_storedSize.transposed();
    if (std::exchange(m_size, size) != size)
        Q_EMIT sizeChanged(size);
}

void Player::setTime(double seconds) {
    if (std::exchange(m_time, seconds) != seconds)
        Q_EMIT timeChanged(seconds);
}

void Player::setHasSoundDevice(bool isThere) {
    if (std::exchange(m_hasSoundDevice, isThere) != isThere)
        Q_EMIT soundDeviceChanged(isThere);
}

void Player::setPlaying(bool playing) {
    if (std::exchange(m_playing, playing) != playing)
        Q_EMIT playingChanged(playing);
}

}
