#include "playback/CopyTrack.h"

#include <mpv/client.h>
#include <QFile>
#include <utility>

namespace pointloom::playback {

namespace {

// Marks the answers to requests made here; below it are the number of the attempt and what was requested.
constexpr std::uint64_t copyReply = 1ULL << 63;
constexpr std::uint64_t copyRequestBits = 2;
constexpr std::uint64_t copyRequestMask = (1u << copyRequestBits) - 1;

}

CopyTrack::CopyTrack(mpv_handle* handle, std::function<void()> changed)
    : m_handle(handle)
    , m_changed(std::move(changed))
    , m_watch([this](const auto&...) { giveUp(); }) {}

void CopyTrack::setPath(const QString& path) {
    if (path == m_path)
        return;
    const bool wasShown = m_isShown;
    remove();
    m_path = path;
    if (m_fileIsOpen && !m_path.isEmpty())
        add();
    else if (wasShown)
        m_changed();
}

void CopyTrack::setFileIsOpen(bool isOpen) {
    m_openedAt = ++m_attempt;
    m_watch.stop();
    m_isShown = false;
    m_mayBeSeen = false;
    m_number = 0;
    m_fileIsOpen = isOpen;
    if (isOpen && !m_path.isEmpty())
        add();
}

void CopyTrack::add() {
    ++m_attempt;
    m_mayBeSeen = true;
    m_watch.start(m_path);
    requestNumber(m_handle, "current-tracks/video/id", idOf(Request::ownNumber));
    sendCommand(m_handle, {"video-add", QFile::encodeName(m_path), "select"}, idOf(Request::add));
    ++m_unanswered;
}

void CopyTrack::remove() {
    m_watch.stop();
    ++m_attempt;
    if (!std::exchange(m_isShown, false))
        return;
    selectOwn();
    if (const int number = std::exchange(m_number, 0); number != 0)
        sendCommand(m_handle, {"video-remove", QByteArray::number(number)});
}

void CopyTrack::selectOwn() {
    sendProperty(m_handle, "vid", QByteArray::number(m_ownNumber).constData());
}

void CopyTrack::giveUp() {
    setPath({});
}

bool CopyTrack::handleReply(const mpv_event& event) {
    if ((event.reply_userdata & copyReply) == 0)
        return false;
    const auto what = static_cast<Request>(event.reply_userdata & copyRequestMask);
    if (what == Request::add)
        --m_unanswered;
    if (event.reply_userdata != idOf(what)) {
        // An earlier one, given up while it was being added, is selected all the same.
        const std::uint64_t attempt = (event.reply_userdata & ~copyReply) >> copyRequestBits;
        if (what == Request::add && event.error >= 0 && attempt > m_openedAt && !m_isShown)
            selectOwn();
        return true;
    }
    switch (what) {
    case Request::ownNumber:
        m_ownNumber = static_cast<int>(numberIn(event).value_or(1));
        break;
    case Request::add:
        if (event.error < 0) {
            giveUp();
            break;
        }
        m_isShown = true;
        requestNumber(m_handle, "current-tracks/video/id", idOf(Request::number));
        m_changed();
        break;
    case Request::number:
        m_number = static_cast<int>(numberIn(event).value_or(0));
        break;
    }
    return true;
}

std::uint64_t CopyTrack::idOf(Request what) const {
    return copyReply | m_attempt << copyRequestBits | static_cast<std::uint64_t>(what);
}

}
