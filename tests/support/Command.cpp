#include "support/Command.h"

#include <cerrno>
#include <cstdio>
#include <QFile>
#include <system_error>

namespace pointloom::test {

CommandResult runCommand(const QString& line, int seconds) {
    // Ends by the signal that ended the program.
    const QString bounded =
        QStringLiteral("exec timeout --signal=KILL %1 %2 </dev/null").arg(QString::number(seconds), line);
    std::FILE* pipe = ::popen(bounded.toUtf8().constData(), "r");
    if (!pipe)
        throw std::system_error(errno, std::generic_category(), "popen");
    CommandResult result;
    QFile file;
    if (file.open(pipe, QIODevice::ReadOnly))
        result.output = file.readAll();
    result.status = ::pclose(pipe);
    return result;
}

QString quoted(QString argument) {
    return u'\'' + argument.replace(QStringLiteral("'"), QStringLiteral("'\\''")) + u'\'';
}

}
