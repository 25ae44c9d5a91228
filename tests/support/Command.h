// Runs programs for tests, through the shell: after QProcess the thread sanitizer loses track of the test's
// own locks.
#pragma once

#include <QByteArray>
#include <QString>

namespace pointloom::test {

struct CommandResult {
    int status = 0; // as waitpid(2) tells it
    QByteArray output;
};

/// Runs a program, as a line of the shell names it, without input. After `seconds` it is killed (SIGKILL).
/// Throws std::system_error when the shell cannot be started.
CommandResult runCommand(const QString& line, int seconds);

/// The argument as one word of a command line.
QString quoted(QString argument);

}
