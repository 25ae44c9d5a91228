// The one piece of state that a dying process reads: where its crash record goes.
#pragma once

#include <string_view>

namespace pointloom::CrashReporterGlobals {

constexpr std::size_t crashFilePathSize = 1024; // bytes, the closing NUL included

/// Copies the path into the process-wide buffer, cut to what fits. Call before handlers are installed.
void setCrashFilePath(std::string_view path);

/// The start of the buffer; an empty text until a path was set. Safe in a signal handler.
const char* crashFilePathBuffer();

/// Hands the start of the buffer to `use` without copying.
template <class Use>
void withCrashFilePathBuffer(Use&& use) {
    use(crashFilePathBuffer());
}

}
