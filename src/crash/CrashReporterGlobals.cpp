#include "crash/CrashReporterGlobals.h"

#include <algorithm>
#include <array>

namespace pointloom::CrashReporterGlobals {

namespace {

std::array<char, crashFilePathSize> pathBuffer{};

}

void setCrashFilePath(std::string_view path) {
    const std::size_t length = std::min(path.size(), pathBuffer.size() - 1);
    std::copy_n(path.begin(), length, pathBuffer.begin());
    std::fill(pathBuffer.begin() + static_cast<std::ptrdiff_t>(length), pathBuffer.end(), '\0');
}

const char* crashFilePathBuffer() {
    return pathBuffer.data();
}

}
