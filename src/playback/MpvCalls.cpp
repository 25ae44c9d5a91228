#include "playback/MpvCalls.h"

#include <mpv/client.h>
#include <string_view>
#include <vector>

namespace pointloom::playback {

void sendCommand(mpv_handle* handle, std::initializer_list<QByteArray> arguments, std::uint64_t id) {
    std::vector<const char*> pointers;
    for (const QByteArray& argument : arguments)
        pointers.push_back(argument.constData());
    pointers.push_back(nullptr);
    mpv_command_async(handle, id, pointers.data());
}

void sendProperty(mpv_handle* handle, const char* name, bool value) {
    int flag = value ? 1 : 0;
    mpv_set_property_async(handle, noReply, name, MPV_FORMAT_FLAG, &flag);
}

void sendProperty(mpv_handle* handle, const char* name, double value) {
    mpv_set_property_async(handle, noReply, name, MPV_FORMAT_DOUBLE, &value);
}

void sendProperty(mpv_handle* handle, const char* name, const char* value) {
    mpv_set_property_async(handle, noReply, name, MPV_FORMAT_STRING, &value);
}

void requestNumber(mpv_handle* handle, const char* name, std::uint64_t id) {
    mpv_get_property_async(handle, id, name, MPV_FORMAT_DOUBLE);
}

void requestText(mpv_handle* handle, const char* name, std::uint64_t id) {
    mpv_get_property_async(handle, id, name, MPV_FORMAT_STRING);
}

std::optional<double> numberIn(const mpv_event& reply) {
    const auto* property = static_cast<const mpv_event_property*>(reply.data);
    if (reply.error < 0 || !property || property->format != MPV_FORMAT_DOUBLE)
        return std::nullopt;
    return *static_cast<const double*>(property->data);
}

QByteArray textIn(const mpv_event& reply) {
    const auto* property = static_cast<const mpv_event_property*>(reply.data);
    if (reply.error < 0 || !property || property->format != MPV_FORMAT_STRING)
        return {};
    return *static_cast<char* const*>(property->data);
}

std::optional<std::int64_t> playlistEntryIn(const mpv_event& reply) {
    const auto* command = static_cast<const mpv_event_command*>(reply.data);
    if (reply.error < 0 || !command || command->result.format != MPV_FORMAT_NODE_MAP)
        return std::nullopt;
    const mpv_node_list& list = *command->result.u.list;
    for (int i = 0; i < list.num; ++i) {
        if (std::string_view(list.keys[i]) == "playlist_entry_id" &&
            list.values[i].format == MPV_FORMAT_INT64)
            return list.values[i].u.int64;
    }
    return std::nullopt;
}

}
