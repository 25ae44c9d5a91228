#include "playback/Mpv.h"

#include <array>
#include <clocale>
#include <mpv/client.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pointloom::playback {

namespace {

struct Option {
    const char* name;
    const char* value;
};

constexpr std::array options{
    // Without this newer versions open a window of their own.
    Option{"vo", "libmpv"},
    Option{"force-window", "no"},
    Option{"idle", "yes"},
    Option{"pause", "yes"},
    Option{"keep-open", "yes"},
    // Player::updateEnd pauses; libmpv of its own would stay paused after a seek away from the end.
    Option{"keep-open-pause", "no"},
    Option{"loop-file", "no"},
    Option{"loop-playlist", "no"},

    // Times stay the file's own, so that markers mean the same here and in the export.
    Option{"rebase-start-time", "no"},
    Option{"hr-seek", "yes"},
    Option{"hr-seek-framedrop", "yes"},

    // The view keeps the aspect; nothing but the picture is drawn.
    Option{"keepaspect", "no"},
    Option{"osd-level", "0"},
    Option{"sid", "no"},
    Option{"audio-display", "no"},
    Option{"stop-screensaver", "no"},
    Option{"audio-fallback-to-null", "yes"},
    Option{"audio-client-name", "Pointloom"},

    // Enough for a preview. The usual filters read weights from a texture, which libmpv 0.40 with software
    // OpenGL (Mesa 25) often draws as black.
    Option{"scale", "bicubic_fast"},
    Option{"cscale", "bilinear"},

    // HDR looks as exports to H.264 do: the same fixed tone curve and the same colours.
    Option{"tone-mapping", "mobius"},
    Option{"tone-mapping-param", "0.5"},
    Option{"hdr-compute-peak", "no"},
    Option{"gamut-mapping-mode", "clip"},

    // A local file needs little read ahead; the default grows to hundreds of megabytes.
    Option{"cache", "no"},
    Option{"demuxer-max-bytes", "64MiB"},
    Option{"demuxer-max-back-bytes", "0"},

    // Only MP4 and MOV, whatever the file looks like inside, and no way from it to anywhere else.
    Option{"demuxer", "lavf"},
    Option{"demuxer-lavf-format", "mov"},
    Option{"demuxer-lavf-propagate-opts", "no"},
    Option{"access-references", "no"},
    Option{"load-unsafe-playlists", "no"},
    Option{"ordered-chapters", "no"},
    Option{"merge-files", "no"},
    Option{"prefetch-playlist", "no"},
    Option{"autoload-files", "no"},
    Option{"sub-auto", "no"},
    Option{"audio-file-auto", "no"},
    Option{"cover-art-auto", "no"},

    // No settings, scripts, keys or history of libmpv's own.
    Option{"config", "no"},
    Option{"use-filedir-conf", "no"},
    Option{"load-scripts", "no"},
    Option{"load-auto-profiles", "no"},
    Option{"load-osd-console", "no"},
    Option{"load-stats-overlay", "no"},
    Option{"osc", "no"},
    Option{"ytdl", "no"},
    Option{"cookies", "no"},
    Option{"resume-playback", "no"},
    Option{"save-position-on-quit", "no"},
    Option{"input-default-bindings", "no"},
    Option{"input-builtin-bindings", "no"},
    Option{"input-media-keys", "no"},
    Option{"input-cursor", "no"},
    Option{"input-vo-keyboard", "no"},
    Option{"terminal", "no"},
    Option{"msg-level", "all=no"},
};

// Scripts that newer versions bring along.
constexpr std::array newerOptions{
    Option{"load-console", "no"},     Option{"load-commands", "no"},     Option{"load-select", "no"},
    Option{"load-positioning", "no"}, Option{"load-context-menu", "no"},
};

void check(int result, const char* what) {
    if (result < 0)
        throw PlaybackError(std::string("The player cannot be started: ") + what + ": " +
                            mpv_error_string(result) + ".");
}

// Sets options of FFmpeg's. Given as one text they would be split at commas, so they are passed as a map, and
// read back: an option that is not taken fails silently otherwise.
void setLibavOptions(mpv_handle* handle, const char* name,
                     std::vector<std::pair<std::string, std::string>> pairs) {
    std::vector<char*> keys;
    std::vector<mpv_node> values;
    std::string expected;
    for (auto& [key, value] : pairs) {
        keys.push_back(key.data());
        values.push_back({{.string = value.data()}, MPV_FORMAT_STRING});
        expected += (expected.empty() ? "" : ",") + key + "=" + value;
    }
    mpv_node_list list{static_cast<int>(pairs.size()), values.data(), keys.data()};
    mpv_node map{{.list = &list}, MPV_FORMAT_NODE_MAP};
    check(mpv_set_property(handle, name, MPV_FORMAT_NODE, &map), name);

    const std::unique_ptr<char, decltype(&mpv_free)> taken(mpv_get_property_string(handle, name), &mpv_free);
    if (!taken || taken.get() != expected)
        throw PlaybackError(std::string("The player cannot be started: it does not take the option ") + name +
                            ".");
}

}

void MpvDeleter::operator()(mpv_handle* handle) const {
    mpv_terminate_destroy(handle);
}

MpvHandle startMpv(Sound sound) {
    // Qt takes over the user's locale at start; a decimal comma would break every number given to libmpv.
    std::setlocale(LC_NUMERIC, "C");
    MpvHandle handle(mpv_create());
    if (!handle)
        throw PlaybackError("The player cannot be started: there is not enough memory.");
    for (const Option& option : options)
        check(mpv_set_option_string(handle.get(), option.name, option.value), option.name);
    for (const Option& option : newerOptions) {
        const int result = mpv_set_option_string(handle.get(), option.name, option.value);
        if (result != MPV_ERROR_OPTION_NOT_FOUND)
            check(result, option.name);
    }
    if (sound == Sound::none)
        check(mpv_set_option_string(handle.get(), "ao", "null"), "ao");
    check(mpv_initialize(handle.get()), "initialisation");
    setLibavOptions(handle.get(), "stream-lavf-o", {{"protocol_whitelist", "file"}});
    // libmpv reads edit lists in a simpler way than FFmpeg does by default, which moves every frame of some
    // phones' files; the export reads them in full.
    setLibavOptions(handle.get(), "demuxer-lavf-o",
                    {{"protocol_whitelist", "file"}, {"advanced_editlist", "1"}});
    return handle;
}

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
