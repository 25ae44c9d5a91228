// What libmpv tells the player, and what follows from it.
#include "playback/Player.h"
#include "playback/SourceAddress.h"

#include <algorithm>
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
// many cameras write them), those shown right before it cannot be decoded from there. While playing, a later
// time tells nothing: the file has played on before it arrived.
bool Player::isTooLate(double time) const {
    const auto current = m_queue.current();
    return !m_playing && current && current->kind == Seek::Kind::exact && !current->fromFurtherBack &&
           !m_queue.waiting() && m_frameDuration > 0 &&
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
