// FFmpeg's error codes in words.
#pragma once

#include "media/MediaError.h"

#include <cstddef>
#include <string>

namespace pointloom::media {

/// The library's own text for an error code, for example "No space left on device".
std::string errorText(int code);

/// What the system's own codes mean for a file; `other` for all that FFmpeg adds, which mean one thing while
/// reading and another while writing.
MediaFault faultOf(int code);

/// Throws MediaError("`what`: `errorText`", `faultOf`) when `code` is negative; returns it otherwise.
int check(int code, const char* what);

/// Allows the library single allocations of up to `bytes` while it lives, in the whole process.
class LargerAllocations {
public:
    explicit LargerAllocations(std::size_t bytes);
    ~LargerAllocations();
    LargerAllocations(const LargerAllocations&) = delete;
    LargerAllocations& operator=(const LargerAllocations&) = delete;
};

/// Process-wide limits and silence: no allocation above 512 MiB, nothing on standard error. Every way into
/// the library calls it; only the first call does anything.
void prepareFFmpeg();

}
