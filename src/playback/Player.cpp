#include "playback/Player.h"

#include "playback/SourceAddress.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <mpv/client.h>
#include <QFile>
#include <string_view>
#include <utility>

namespace pointloom::playback {

namespace {

// libmpv takes the first frame from 5 ms before the time it is given; at 240 frames a second that is the
// frame before. This leaves 1 ms, enough for times that were rounded.
constexpr double seekBias = 0.004; // seconds

// Opening a file ends when its first frame is decoded, as a seek does.
constexpr Seek toFirstFrame{Seek::Kind::exact, 0};

// Answers carry the generation that asked and what was asked for in one number.
constexpr std::uint64_t requestBits = 4;
constexpr std::uint64_t requestMask = (1u << requestBits) - 1;

// Frames that start this close to each other are the same one; files round their times.
constexpr double seekTolerance = 0.001; // seconds

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

// On one of libmpv's threads, which must not call back into it.
void Player::postWakeup(void* self) {
    auto* player = static_cast<Player*>(self);
    if (!player->m_wakeupPosted.exchange(true))
        QMetaObject::invokeMethod(player, &Player::drainEvents, Qt::QueuedConnection);
}

void Player::drainEvents() {
    m_wakeupPosted = false;
    for (;;) {
        const mpv_event* event = mpv_wait_event(handle(), 0);
        if (event->event_id == MPV_EVENT_NONE)
            return;
        handleEvent(*event);
    }
}

void Player::handleEvent(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_START_FILE:
        m_startedEntry = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id;
        break;
    case MPV_EVENT_FILE_LOADED:
        // Known before the first frame, and needed to draw it.
        if (concernsOurFile())
            request(Request::rotation, "current-tracks/video/demux-rotation");
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (!concernsOurFile())
            break;
        requestVideoParameters();
        request(Request::frameRate, "container-fps");
        request(Request::duration, "duration");
        request(Request::timeAfterSeek, "time-pos");
        break;
    case MPV_EVENT_END_FILE:
        handleFileEnd(event);
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        handlePropertyChange(event);
        break;
    case MPV_EVENT_COMMAND_REPLY:
    case MPV_EVENT_GET_PROPERTY_REPLY:
        if (m_copy.handleReply(event)) {
            if (m_stage == Stage::waitingForRenderer && m_hasRenderer)
                open(); // which waited for this
        } else if (event.reply_userdata >> requestBits == m_generation) {
            handleReply(event);
        }
        break;
    default:
        break;
    }
}

void Player::handleReply(const mpv_event& event) {
    const std::optional<double> number =
        event.event_id == MPV_EVENT_GET_PROPERTY_REPLY ? numberIn(event) : std::nullopt;
    switch (static_cast<Request>(event.reply_userdata & requestMask)) {
    case Request::load:
        if (const auto entry = playlistEntryIn(event))
            m_entry = *entry;
        else
            refuse(faultOfPlayer(event.error));
        break;
    case Request::seek:
        if (event.error < 0)
            startWaiting();
        break;
    case Request::duration:
        m_duration = std::max(number.value_or(0), m_measuredEnd);
        break;
    case Request::frameRate:
        if (!m_copy.mayBeSeen())
            m_frameDuration = number.value_or(0) > 0 ? 1 / *number : 0;
        break;
    case Request::width:
        m_storedSize.setWidth(static_cast<int>(number.value_or(0)));
        break;
    case Request::height:
        m_storedSize.setHeight(static_cast<int>(number.value_or(0)));
        if (m_stage == Stage::loaded && !m_copy.mayBeSeen())
            updateSize();
        break;
    case Request::rotation: {
        constexpr int quarter = 90;
        m_storedRotation = static_cast<int>(std::lround(number.value_or(0) / quarter)) % 4 * quarter;
        break;
    }
    case Request::transfer:
        m_transfer = textIn(event);
        break;
    case Request::primaries:
        m_primaries = textIn(event);
        break;
    case Request::peak:
        updateLight(number.value_or(0));
        break;
    case Request::time:
        m_timeRequested = false;
        // While the pictures change to those of a copy, libmpv tells a time a little back.
        if (number && !m_queue.busy() && !m_showsKeyframe)
            setTime(m_playing ? std::max(m_time, *number) : *number);
        break;
    case Request::timeAfterSeek:
        endSeek(number.value_or(m_time));
        break;
    case Request::none:
        break;
    }
}

/// `peak` is in units of SDR white.
void Player::updateLight(double peak) {
    const std::optional<SourceLight> light = sourceLightOf(m_transfer, m_primaries, peak);
    if (std::exchange(m_sourceLight, light) != light)
        Q_EMIT sourceLightChanged();
}

void Player::handleFileEnd(const mpv_event& event) {
    const auto* end = static_cast<const mpv_event_end_file*>(event.data);
    if (m_entry == 0 || end->playlist_entry_id != m_entry)
        return;
    if (end->reason == MPV_END_FILE_REASON_ERROR)
        refuse(faultOfPlayer(end->error));
    else if (end->reason == MPV_END_FILE_REASON_EOF)
        refuse(faultOfPlayer(MPV_ERROR_NOTHING_TO_PLAY));
}

void Player::handlePropertyChange(const mpv_event& event) {
    const auto* property = static_cast<const mpv_event_property*>(event.data);
    const std::string_view name = property->name;
    if (name == "eof-reached" && property->format == MPV_FORMAT_FLAG) {
        m_endIsReported = *static_cast<const int*>(property->data) != 0;
        updateEnd();
    } else if (name == "current-ao") {
        // Absent when the file has no sound.
        const bool isNowhere = property->format == MPV_FORMAT_STRING &&
                               std::string_view(*static_cast<char**>(property->data)) == "null";
        setHasSoundDevice(!isNowhere);
    } else if (name == "video-params" && concernsOurFile()) {
        // Also before the first frame is shown, which would flash in wrong colours otherwise.
        requestVideoParameters();
    } else if (m_stage != Stage::loaded) {
        return;
    } else if (name == "time-pos" && !m_queue.busy() && !m_timeRequested) {
        m_timeRequested = true;
        request(Request::time, "time-pos");
    } else if (name == "duration") {
        request(Request::duration, "duration");
    }
}

void Player::updateEnd() {
    m_atEnd = m_endIsReported && m_stage == Stage::loaded && !m_queue.busy();
    if (!m_atEnd || !m_playing)
        return;
    pause();
    Q_EMIT endReached();
}

// The end may have been reported before a seek to it was over, or may still be reported after one away from
// it: the time tells which.
void Player::handleSeekToEnd(double time) {
    if (!m_queue.busy() && time + m_frameDuration > m_duration - seekTolerance)
        updateEnd();
}

void Player::endSeek(double time) {
    if (m_stage == Stage::opening) {
        handleFirstFrame(time);
        return;
    }
    if (isTooLate(time)) {
        m_queue.begin({Seek::Kind::exact, m_queue.current()->time, true});
        sendSeek(*m_queue.current());
        return;
    }
    // A time that was requested since, or that is shown as the key frame before it, is kept.
    if (!m_queue.waiting() && !m_showsKeyframe)
        setTime(time);
    const std::uint64_t generation = m_generation;
    Q_EMIT seeked(time);
    // A receiver of the signal may have opened another file.
    if (generation != m_generation)
        return;
    startWaiting();
    handleSeekToEnd(time);
}

// Whether an exact seek missed frames. Where frames refer across a key frame (open groups of pictures, as
// many cameras write them), those shown right before it cannot be decoded from there.
bool Player::isTooLate(double time) const {
    const auto current = m_queue.current();
    return current && current->kind == Seek::Kind::exact && !current->fromFurtherBack && !m_queue.waiting() &&
           m_frameDuration > 0 &&
           time - std::max(current->time, m_firstTime) > m_frameDuration - seekTolerance;
}

void Player::handleFirstFrame(double time) {
    if (m_storedSize.isEmpty()) {
        refuse(faultOfPlayer(MPV_ERROR_NOTHING_TO_PLAY));
        return;
    }
    if (time <= seekTolerance || m_measuredEnd > 0) {
        announceFile(time);
        return;
    }
    // With FFmpeg 7, what libmpv calls the end of a file that starts late is its length, until it has read
    // the whole file.
    findDuration(m_recording, this, [this, time, generation = m_generation](double duration) {
        if (generation != m_generation || m_stage != Stage::opening)
            return;
        m_measuredEnd = duration;
        announceFile(time);
    });
}

void Player::announceFile(double time) {
    m_stage = Stage::loaded;
    m_firstTime = time;
    m_duration = std::max(m_duration, m_measuredEnd);
    updateSize();
    m_copy.setFileIsOpen(true);
    setTime(m_queue.waiting() ? m_queue.waiting()->time : time);
    const std::uint64_t generation = m_generation;
    if (!std::exchange(m_announced, true))
        Q_EMIT fileLoaded();
    if (generation == m_generation)
        startWaiting();
}

void Player::request(Request what, const char* property) {
    requestNumber(handle(), property, idOf(what));
}

void Player::requestVideoParameters() {
    request(Request::rotation, "current-tracks/video/demux-rotation");
    requestText(handle(), "video-params/gamma", idOf(Request::transfer));
    requestText(handle(), "video-params/primaries", idOf(Request::primaries));
    request(Request::peak, "video-params/sig-peak");
    request(Request::width, "video-params/dw");
    request(Request::height, "video-params/dh");
}

std::uint64_t Player::idOf(Request what) const {
    return m_generation << requestBits | static_cast<std::uint64_t>(what);
}

bool Player::concernsOurFile() const {
    return m_entry != 0 && m_entry == m_startedEntry;
}

}
