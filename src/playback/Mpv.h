// libmpv: starts it with everything switched off that reaches beyond the one file it is told to play, and
// makes requests that return at once, whose outcome arrives as an event carrying `id`.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <QByteArray>
#include <stdexcept>

struct mpv_event;
struct mpv_handle;

namespace pointloom::playback {

/// The player cannot be started, or its picture cannot be drawn. `what()` is a sentence for the user.
class PlaybackError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct MpvDeleter {
    void operator()(mpv_handle* handle) const;
};

/// Ends the player when it is destroyed; every render context must be destroyed before.
using MpvHandle = std::unique_ptr<mpv_handle, MpvDeleter>;

enum class Sound {
    device, // the desktop's; discarded without an error when there is none
    none,   // discarded, at the pace of a sound device
};

/// A started, idle, paused player. Sets LC_NUMERIC to "C" for the whole process, which libmpv requires: call
/// it on the main thread. Throws PlaybackError.
MpvHandle startMpv(Sound sound);

/// Carried by outcomes that nothing waits for.
constexpr std::uint64_t noReply = 0;

/// Arguments are taken literally: no quoting, no escapes.
void sendCommand(mpv_handle* handle, std::initializer_list<QByteArray> arguments, std::uint64_t id = noReply);

void sendProperty(mpv_handle* handle, const char* name, bool value);
void sendProperty(mpv_handle* handle, const char* name, double value);
void sendProperty(mpv_handle* handle, const char* name, const char* value);

/// Requests a property's value as a number.
void requestNumber(mpv_handle* handle, const char* name, std::uint64_t id);

/// Requests a property's value as text.
void requestText(mpv_handle* handle, const char* name, std::uint64_t id);

/// The number in the answer to `requestNumber`; empty when the property has no value now.
std::optional<double> numberIn(const mpv_event& reply);

/// The text in the answer to `requestText`; empty when the property has no value now.
QByteArray textIn(const mpv_event& reply);

/// The number of the playlist entry that a `loadfile` command made; empty when the command failed.
std::optional<std::int64_t> playlistEntryIn(const mpv_event& reply);

}
