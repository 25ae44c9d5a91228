#include "playback/MpvCalls.h"
#include "playback/Player.h"

#include <cmath>
#include <mpv/client.h>
#include <string_view>
#include <utility>

namespace pointloom::playback {

namespace {

// Answers carry the generation that asked and what was asked for in one number.
constexpr std::uint64_t requestBits = 4;
constexpr std::uint64_t requestMask = (1u << requestBits) - 1;

// Frames that start this close to each other are the same one; files round their times.
constexpr double seekTolerance = 0.001; // seconds

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
        request(Request::FrameRate, "container-fps");
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
            refuse(faultOfPlayer(event.error));
        break;
    case Request::Jump:
        if (event.error < 0)
            goOn();
        break;
    case Request::Duration:
        m_duration = number.value_or(0);
        break;
    case Request::FrameRate:
        m_frameDuration = number.value_or(0) > 0 ? 1 / *number : 0;
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
    case Request::Transfer:
        m_transfer = textIn(event);
        break;
    case Request::Primaries:
        m_primaries = textIn(event);
        break;
    case Request::Peak:
        updateLight(number.value_or(0));
        break;
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

/// `peak` is in units of SDR white.
void Player::updateLight(double peak) {
    const std::optional<SourceLight> light = sourceLightOf(m_transfer, m_primaries, peak);
    if (light == m_sourceLight)
        return;
    m_sourceLight = light;
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
        handleEndOfFile();
    } else if (name == "current-ao") {
        // Absent where there is no sound to play.
        const bool isNowhere = property->format == MPV_FORMAT_STRING &&
                               std::string_view(*static_cast<char**>(property->data)) == "null";
        setHasSoundDevice(!isNowhere);
    } else if (name == "video-params" && concernsOurFile()) {
        // Before the first frame is shown, too: in the wrong colours it would flash.
        requestPicture();
    } else if (m_stage != Stage::Loaded) {
        return;
    } else if (name == "time-pos" && !m_queue.busy() && !m_timeRequested) {
        m_timeRequested = true;
        request(Request::Time, "time-pos");
    } else if (name == "duration") {
        request(Request::Duration, "duration");
    }
}

void Player::handleEndOfFile() {
    m_atEnd = m_endIsReported && m_stage == Stage::Loaded && !m_queue.busy();
    if (!m_atEnd || !m_playing)
        return;
    pause();
    Q_EMIT endReached();
}

// The end may have been reported before the jump to it was over, or not be taken back yet after one away from
// it: the time tells which.
void Player::handleLandingAtEnd(double time) {
    if (!m_queue.busy() && time + m_frameDuration > m_duration - seekTolerance)
        handleEndOfFile();
}

void Player::land(double time) {
    if (m_stage == Stage::Opening) {
        announceFile(time);
        return;
    }
    if (isTooLate(time)) {
        m_queue.begin({Jump::Kind::Exact, m_queue.current()->time, true});
        sendJump(*m_queue.current());
        return;
    }
    // A time that was asked for since, or that the key frame only stands in for, is not taken back.
    if (!m_queue.waiting() && !m_timeStandsForKeyframe)
        setTime(time);
    const std::uint64_t generation = m_generation;
    Q_EMIT seeked(time);
    // Whoever listens may have opened another file.
    if (generation != m_generation)
        return;
    goOn();
    handleLandingAtEnd(time);
}

// Whether an exact seek missed frames. Where pictures refer across a key frame (open groups of pictures, as
// many cameras write them), those shown right before it cannot be decoded from there.
bool Player::isTooLate(double time) const {
    const auto jump = m_queue.current();
    return jump && jump->kind == Jump::Kind::Exact && !jump->fromFurtherBack && !m_queue.waiting() &&
           m_frameDuration > 0 && time - std::max(jump->time, m_firstTime) > m_frameDuration - seekTolerance;
}

void Player::announceFile(double time) {
    if (m_storedSize.isEmpty()) {
        refuse(faultOfPlayer(MPV_ERROR_NOTHING_TO_PLAY));
        return;
    }
    m_stage = Stage::Loaded;
    m_firstTime = time;
    updateSize();
    setTime(m_queue.waiting() ? m_queue.waiting()->time : time);
    const std::uint64_t generation = m_generation;
    if (!std::exchange(m_announced, true))
        Q_EMIT fileLoaded();
    if (generation == m_generation)
        goOn();
}

void Player::request(Request what, const char* property) {
    requestNumber(handle(), property, idOf(what));
}

void Player::requestPicture() {
    request(Request::Rotation, "current-tracks/video/demux-rotation");
    requestText(handle(), "video-params/gamma", idOf(Request::Transfer));
    requestText(handle(), "video-params/primaries", idOf(Request::Primaries));
    request(Request::Peak, "video-params/sig-peak");
    request(Request::Width, "video-params/dw");
    request(Request::Height, "video-params/dh");
}

std::uint64_t Player::idOf(Request what) const {
    return m_generation << requestBits | static_cast<std::uint64_t>(what);
}

bool Player::concernsOurFile() const {
    return m_entry != 0 && m_entry == m_startedEntry;
}

}
