// Programs that tests run, by the shell. Not by QProcess, after which the thread sanitizer loses track of the
// test's own locks.
#pragma once

#include <QByteArray>
#include <QString>

namespace pointloom::test {

struct CommandResult {
    int status = 0; // as waitpid(2) tells it
    QByteArray output;
};

/// Runs a command line without input and waits for its end. Throws std::system_error when it cannot be
/// started.
CommandResult runCommand(const QString& line);

/// The argument as one word of a command line.
QString quoted(QString argument);

}
