// Writes a crash record when the process dies of an uncaught exception or a fatal signal.
#pragma once

#include <QString>
#include <string_view>

namespace pointloom {

/// The state that a dying process reads: the path of its crash record.
namespace CrashReporterGlobals {

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

namespace CrashCapture {

/// "pending_crash.json" in the application's data folder, which is created when it is missing.
QString crashFilePath();

/// Stores the path for a dying process. Call before `installHandlers`.
void prepareCrashFilePath();

/// Handles uncaught exceptions and SIGABRT, SIGSEGV, SIGILL and SIGBUS, for every thread. After the
/// record is written the process dies by the same signal, which core dumps and debuggers see.
/// A stack overflow leaves no record: the handler runs on the failing thread's own stack.
void installHandlers();

}

}
