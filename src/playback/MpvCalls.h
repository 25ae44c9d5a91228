// Requests to libmpv that return at once; their outcome arrives as an event carrying `id`.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <QByteArray>

struct mpv_event;
struct mpv_handle;

namespace pointloom::playback {

/// Outcomes that nobody waits for carry this.
constexpr std::uint64_t noReply = 0;

/// Arguments are taken as they stand: no quoting, no escapes.
void sendCommand(mpv_handle* handle, std::initializer_list<QByteArray> arguments, std::uint64_t id = noReply);

void sendProperty(mpv_handle* handle, const char* name, bool value);
void sendProperty(mpv_handle* handle, const char* name, double value);
void sendProperty(mpv_handle* handle, const char* name, const char* value);

/// Asks for a property's value as a number.
void requestNumber(mpv_handle* handle, const char* name, std::uint64_t id);

/// Asks for a property's value as text.
void requestText(mpv_handle* handle, const char* name, std::uint64_t id);

/// The number in the answer to `requestNumber`; empty when the property has no value now.
std::optional<double> numberIn(const mpv_event& reply);

/// The text in the answer to `requestText`; empty when the property has no value now.
QByteArray textIn(const mpv_event& reply);

/// The number of the playlist entry that a `loadfile` command made.
std::optional<std::int64_t> playlistEntryIn(const mpv_event& reply);

}
