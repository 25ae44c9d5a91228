#include "playback/Player.h"

#include "playback/MpvCalls.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <mpv/client.h>
#include <QFile>
#include <QFileInfo>
#include <string_view>
#include <utility>

namespace pointloom::playback {

namespace {

// libmpv takes the first frame from 5 ms before the time it is given; at 240 frames a second that is the
// frame before. This leaves 1 ms, enough for times that were rounded.
constexpr double seekBias = 0.004; // seconds

// Opening a file is over when its first frame is there, like any other jump.
constexpr Jump toFirstFrame{Jump::Kind::Exact, 0};

// Answers carry the generation that asked and what was asked for in one number.
constexpr std::uint64_t requestBits = 4;
constexpr std::uint64_t requestMask = (1u << requestBits) - 1;

QString fileName(const QString& path) {
    return path.section(u'/', -1);
}

QString describe(int error) {
    switch (error) {
    case MPV_ERROR_UNKNOWN_FORMAT:
        return QStringLiteral("it is not an MP4 or MOV file, or it is damaged");
    case MPV_ERROR_LOADING_FAILED:
        return QStringLiteral("it cannot be read");
    case MPV_ERROR_NOTHING_TO_PLAY:
        return QStringLiteral("it holds no picture that can be played");
    case MPV_ERROR_VO_INIT_FAILED:
        return QStringLiteral("its picture cannot be drawn");
    default:
        return QString::fromUtf8(mpv_error_string(error));
    }
}

// Why the file cannot be opened, as far as that shows without reading it; empty when nothing speaks against
// it. Anything but a regular file could keep the player waiting for ever.
QString reasonAgainst(const QString& path) {
    const std::filesystem::path file(QFile::encodeName(path).toStdString());
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status))
        return QStringLiteral("there is no such file");
    if (!std::filesystem::is_regular_file(status))
        return QStringLiteral("it is not a file");
    if (std::filesystem::file_size(file, error) == 0)
        return QStringLiteral("it is empty");
    QFile readable(path);
    if (!readable.open(QIODevice::ReadOnly))
        return readable.errorString();
    return {};
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
    connect(&m_watch, &SourceWatch::lost, this, [this](const QString& reason) {
        fail(QStringLiteral("“%1” can no longer be played: it %2.").arg(fileName(m_path), reason));
    });
    mpv_set_wakeup_callback(handle(), &Player::postWakeup, this);
}

Player::~Player() {
    Q_EMIT aboutToBeDestroyed();
    mpv_set_wakeup_callback(handle(), nullptr, nullptr);
}

void Player::load(const QString& path) {
    closeFile();
    m_path = absolutePath(path);
    const QString reason = path.isEmpty() ? QStringLiteral("no file is named") : reasonAgainst(m_path);
    if (!reason.isEmpty()) {
        // Signals come from the event loop alone.
        QMetaObject::invokeMethod(
            this,
            [this, reason, generation = m_generation] {
                if (generation == m_generation)
                    refuse(reason);
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
    sendProperty(handle(), "pause", false);
}

void Player::pause() {
    setPlaying(false);
    sendProperty(handle(), "pause", true);
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
    m_hardwareDecoding = enabled;
    sendProperty(handle(), "hwdec", enabled ? "auto-safe" : "no");
}

void Player::setRotationHandled(bool handled) {
    sendProperty(handle(), "video-rotate", handled ? "0" : "no");
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
    const std::optional<double> target = m_announced ? m_time : m_queue.target();
    m_stage = Stage::WaitingForRenderer;
    m_entry = 0;
    ++m_generation;
    m_queue.clear();
    m_queue.begin(toFirstFrame);
    if (target)
        m_queue.request({Jump::Kind::Exact, *target});
    sendCommand(handle(), {"stop"});
}

void Player::open() {
    m_stage = Stage::Opening;
    m_entry = 0;
    ++m_generation;
    m_watch.start(m_path);
    m_timeRequested = false;
    sendProperty(handle(), "vid", "auto");
    sendProperty(handle(), "pause", !m_playing);
    sendCommand(handle(), {"loadfile", QFile::encodeName(m_path), "replace"}, idOf(Request::Load));
}

void Player::closeFile() {
    m_watch.stop();
    m_queue.clear();
    ++m_generation;
    m_entry = 0;
    m_announced = false;
    m_atEnd = false;
    m_timeRequested = false;
    m_timeStandsForKeyframe = false;
    m_storedSize = {};
    m_storedRotation = 0;
    if (m_stage == Stage::Empty)
        return;
    m_stage = Stage::Empty;
    sendCommand(handle(), {"stop"});
    setTime(0);
    setDuration(0);
    updateSize();
}

void Player::refuse(const QString& reason) {
    fail(QStringLiteral("“%1” cannot be opened: %2.").arg(fileName(m_path), reason));
}

void Player::fail(const QString& message) {
    unload();
    Q_EMIT failed(message);
}

void Player::sendJump(Jump jump) {
    if (m_stage != Stage::Loaded)
        return;
    ++m_generation;
    m_timeRequested = false;
    m_timeStandsForKeyframe = jump.kind == Jump::Kind::Keyframe && !m_playing;
    if (jump.kind == Jump::Kind::StepBack) {
        sendCommand(handle(), {"frame-back-step"}, idOf(Request::Jump));
        return;
    }
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
    m_queue.finish();
    if (const auto jump = m_queue.takeWaiting())
        sendJump(*jump);
    else
        sendSteps(m_queue.takeSteps());
}

void Player::land(double time) {
    if (m_stage == Stage::Opening) {
        announceFile(time);
        return;
    }
    // A time that was asked for since, or that the key frame only stands in for, is not taken back.
    if (!m_queue.waiting() && !m_timeStandsForKeyframe)
        setTime(time);
    const std::uint64_t generation = m_generation;
    Q_EMIT seeked(time);
    // Whoever listens may have opened another file.
    if (generation == m_generation)
        goOn();
}

void Player::announceFile(double time) {
    if (m_storedSize.isEmpty()) {
        refuse(QStringLiteral("it holds no picture that can be played"));
        return;
    }
    m_stage = Stage::Loaded;
    updateSize();
    setTime(m_queue.waiting() ? m_queue.waiting()->time : time);
    const std::uint64_t generation = m_generation;
    if (!std::exchange(m_announced, true))
        Q_EMIT fileLoaded();
    if (generation == m_generation)
        goOn();
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
            request(Request::Rotation, "current-tracks/video/demux-rotation");
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (!concernsOurFile())
            break;
        requestPicture();
        request(Request::Duration, "duration");
        request(Request::LandedTime, "time-pos");
        break;
    case MPV_EVENT_END_FILE:
        handleFileEnd(event);
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        handlePropertyChange(event);
        break;
    case MPV_EVENT_COMMAND_REPLY:
    case MPV_EVENT_GET_PROPERTY_REPLY:
        if (event.reply_userdata >> requestBits == m_generation)
            handleReply(event);
        break;
    default:
        break;
    }
}

void Player::handleReply(const mpv_event& event) {
    const std::optional<double> number =
        event.event_id == MPV_EVENT_GET_PROPERTY_REPLY ? numberIn(event) : std::nullopt;
    switch (static_cast<Request>(event.reply_userdata & requestMask)) {
    case Request::Load:
        if (const auto entry = playlistEntryIn(event))
            m_entry = *entry;
        else
            refuse(describe(event.error));
        break;
    case Request::Jump:
        if (event.error < 0)
            goOn();
        break;
    case Request::Duration:
        setDuration(number.value_or(0));
        break;
    case Request::Width:
        m_storedSize.setWidth(static_cast<int>(number.value_or(0)));
        break;
    case Request::Height:
        m_storedSize.setHeight(static_cast<int>(number.value_or(0)));
        if (m_stage == Stage::Loaded)
            updateSize();
        break;
    case Request::Rotation: {
        constexpr int quarter = 90;
        m_storedRotation = static_cast<int>(std::lround(number.value_or(0) / quarter)) % 4 * quarter;
        break;
    }
    case Request::Time:
        m_timeRequested = false;
        if (number && !m_queue.busy() && !m_timeStandsForKeyframe)
            setTime(*number);
        break;
    case Request::LandedTime:
        land(number.value_or(m_time));
        break;
    case Request::None:
        break;
    }
}

void Player::handleFileEnd(const mpv_event& event) {
    const auto* end = static_cast<const mpv_event_end_file*>(event.data);
    if (m_entry == 0 || end->playlist_entry_id != m_entry)
        return;
    if (end->reason == MPV_END_FILE_REASON_ERROR)
        refuse(describe(end->error));
    else if (end->reason == MPV_END_FILE_REASON_EOF)
        refuse(describe(MPV_ERROR_NOTHING_TO_PLAY));
}

void Player::handlePropertyChange(const mpv_event& event) {
    const auto* property = static_cast<const mpv_event_property*>(event.data);
    const std::string_view name = property->name;
    if (name == "eof-reached" && property->format == MPV_FORMAT_FLAG) {
        handleEndOfFile(*static_cast<const int*>(property->data) != 0);
    } else if (m_stage != Stage::Loaded) {
        return;
    } else if (name == "time-pos" && !m_queue.busy() && !m_timeRequested) {
        m_timeRequested = true;
        request(Request::Time, "time-pos");
    } else if (name == "duration") {
        request(Request::Duration, "duration");
    } else if (name == "video-params") {
        requestPicture();
    }
}

void Player::handleEndOfFile(bool reached) {
    m_atEnd = reached && m_stage == Stage::Loaded && !m_queue.busy();
    if (!m_atEnd || !m_playing)
        return;
    pause();
    Q_EMIT endReached();
}

void Player::request(Request what, const char* property) {
    requestNumber(handle(), property, idOf(what));
}

void Player::requestPicture() {
    request(Request::Rotation, "current-tracks/video/demux-rotation");
    request(Request::Width, "video-params/dw");
    request(Request::Height, "video-params/dh");
}

std::uint64_t Player::idOf(Request what) const {
    return m_generation << requestBits | static_cast<std::uint64_t>(what);
}

bool Player::concernsOurFile() const {
    return m_entry != 0 && m_entry == m_startedEntry;
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

void Player::setDuration(double seconds) {
    if (seconds == m_duration)
        return;
    m_duration = seconds;
    Q_EMIT durationChanged(seconds);
}

void Player::setPlaying(bool playing) {
    if (playing == m_playing)
        return;
    m_playing = playing;
    Q_EMIT playingChanged(playing);
}

}
