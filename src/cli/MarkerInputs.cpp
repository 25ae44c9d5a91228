#include "cli/MarkerInputs.h"

#include "cli/Messages.h"

#include <QFileInfo>

namespace pointloom::cli {

namespace {

// "line 4, 9: no time that can be read"
QStringList faultsByLine(const MarkerFile& file) {
    QStringList faults;
    for (const auto& [reason, lines] : byReason(file.leftOut))
        faults += QStringLiteral("line %1: %2").arg(lines, t(Language::english, reason));
    return faults;
}

MarkerFile readKind(const QString& path, const MatchStart& match, bool isTable, const QString& otherKind) {
    MarkerFile file = MarkerFile::read(path, match);
    const QString name = QFileInfo(path).fileName() + QStringLiteral(": ");
    const QStringList faults = faultsByLine(file);
    if (file.markers.empty()) {
        const QString lines = QStringLiteral("no valid markers in %1 lines of data").arg(file.lineCount);
        throw CommandError(
            name + (isTable
                        ? lines
                        : (QStringList{QStringLiteral("no points")} + faults).join(QStringLiteral("; "))));
    }
    if ((file.kind == MarkerFile::Kind::table) != isTable)
        throw CommandError(name + otherKind);
    if (file.kind == MarkerFile::Kind::points && !faults.isEmpty())
        throw CommandError(name + faults.join(QStringLiteral("; ")));
    for (const QString& fault : faults)
        sayNote(name + QStringLiteral("left out, ") + fault);
    return file;
}

}

MarkerFile readTable(const QString& path, const MatchStart& match) {
    return readKind(path, match, true, QStringLiteral("no table of markers; \"new --points\" reads it"));
}

MarkerFile readPoints(const QString& path, const MatchStart& match) {
    return readKind(path, match, false, QStringLiteral("a table of markers; give it with --markers"));
}

}
