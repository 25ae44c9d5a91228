// Leaves a crash record when the process dies of an uncaught exception or a fatal signal.
#pragma once

#include <QString>

namespace pointloom::CrashCapture {

/// "pending_crash.json" in the application's data folder, which is created when it is missing.
QString crashFilePath();

/// Stores the path where a dying process finds it. Before `installHandlers`.
void prepareCrashFilePath();

/// Takes over uncaught exceptions, then SIGABRT, SIGSEGV, SIGILL and SIGBUS, for every thread. After the
/// record is written the process dies as it would have: core dumps and debuggers see the same signal.
/// A stack overflow leaves no record: the handler runs on the failing thread's own stack.
void installHandlers();

}
