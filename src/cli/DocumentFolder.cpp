#include "cli/DocumentFolder.h"

#include "cli/CommandError.h"

#include <algorithm>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

namespace pointloom::cli {

QStringList documentsIn(const QString& folder, bool withSubfolders) {
    const QDir directory(folder);
    if (!QFileInfo(folder).isDir())
        throw CommandError(folder + QStringLiteral(": there is no such folder"));
    QDirIterator walk(folder, {QStringLiteral("*.plp")}, QDir::Files,
                      withSubfolders ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    QStringList documents;
    while (walk.hasNext())
        documents += directory.relativeFilePath(QFileInfo(walk.next()).absoluteFilePath());
    documents.sort();
    return documents;
}

QString outputNameFor(const QString& document, const QString& extension) {
    return QStringLiteral("%1_scoreboard.%2").arg(document.chopped(4), extension); // without ".plp"
}

bool isNewerThan(const QString& output, const std::vector<InputFile>& inputs) {
    const QFileInfo file(output);
    return file.isFile() && std::all_of(inputs.begin(), inputs.end(), [&](const InputFile& input) {
               return file.lastModified() > QFileInfo(input.path).lastModified();
           });
}

}
