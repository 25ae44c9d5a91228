#include "media/FFmpeg.h"

#include <algorithm>
#include <array>
#include <mutex>

namespace pointloom::media {

namespace {

constexpr std::size_t largestAllocation = 512U << 20U; // bytes

}

std::string errorText(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return text.data();
}

MediaFault faultOf(int code) {
    switch (code) {
    case AVERROR(ENOENT):
    case AVERROR(ENOTDIR):
        return MediaFault::missing;
    case AVERROR(EACCES):
    case AVERROR(EPERM):
    case AVERROR(EROFS):
        return MediaFault::noPermission;
    case AVERROR(ENOSPC):
    case AVERROR(EDQUOT):
        return MediaFault::diskFull;
    default:
        return MediaFault::other;
    }
}

int check(int code, const char* what) {
    if (code < 0)
        throw MediaError(std::string(what) + ": " + errorText(code), faultOf(code));
    return code;
}

LargerAllocations::LargerAllocations(std::size_t bytes) {
    av_max_alloc(std::max(bytes, largestAllocation));
}

LargerAllocations::~LargerAllocations() {
    av_max_alloc(largestAllocation);
}

void prepareFFmpeg() {
    static std::once_flag once;
    std::call_once(once, [] {
        av_max_alloc(largestAllocation);
        av_log_set_level(AV_LOG_QUIET); // our own errors say what failed
    });
}

}
