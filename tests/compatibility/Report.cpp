#include "compatibility/Report.h"

#include <QFile>
#include <stdexcept>

namespace pointloom::test {

namespace {

QString framesText(const Measured& measured) {
    if (measured.frames != measured.framesExpected)
        return QStringLiteral("%1 of %2").arg(measured.frames).arg(measured.framesExpected);
    return QStringLiteral("%1, within %2 ms").arg(measured.frames).arg(measured.worstTime * 1000, 0, 'f', 1);
}

}

void report(const QString& source, const QString& preset, const QString& format, const Measured& measured,
            bool passed) {
    const QString path = qEnvironmentVariable("POINTLOOM_COMPATIBILITY_ROWS");
    if (path.isEmpty())
        return;
    const QStringList cells = {
        source,
        preset,
        format,
        framesText(measured),
        measured.soundLate ? QStringLiteral("%1 ms").arg(*measured.soundLate * 1000, 0, 'f', 1)
                           : QStringLiteral("no sound"),
        measured.isToneMapped ? QStringLiteral("tone-mapped") : QString::number(measured.worstColor, 'f', 1),
        QString::number(measured.worstOverlay, 'f', 1),
        passed ? QStringLiteral("right") : QStringLiteral("**wrong**"),
    };
    QFile file(path);
    const QByteArray row = QStringLiteral("| %1 |\n").arg(cells.join(QStringLiteral(" | "))).toUtf8();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(row) != row.size())
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
}

}
