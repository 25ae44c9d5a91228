#include "media/FFmpegError.h"

#include "media/FFmpeg.h"
#include "media/MediaError.h"

#include <array>
#include <mutex>

namespace pointloom::media {

std::string errorText(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return text.data();
}

int check(int code, const char* what) {
    if (code < 0)
        throw MediaError(std::string(what) + ": " + errorText(code));
    return code;
}

void prepareFFmpeg() {
    static std::once_flag once;
    std::call_once(once, [] {
        constexpr std::size_t largestAllocation = 512U << 20U; // bytes
        av_max_alloc(largestAllocation);
        av_log_set_level(AV_LOG_QUIET); // what goes wrong is told by our own errors
    });
}

}
