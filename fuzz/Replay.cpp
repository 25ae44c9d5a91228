// Tries every file of a folder once, in builds without libFuzzer: what was found stays mended.
// Usage: replay_TARGET FOLDER
#include "FuzzTarget.h"

#include <cstdio>
#include <QDir>
#include <QFile>

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fputs("usage: replay FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QFile::decodeName(arguments[1]));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s cannot be read\n", qUtf8Printable(file.fileName()));
            return 1;
        }
        std::printf("%s\n", qUtf8Printable(name)); // the last one named is the one that failed
        std::fflush(stdout);
        const QByteArray content = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.constData()),
                               static_cast<std::size_t>(content.size()));
    }
    std::printf("%d inputs\n", static_cast<int>(names.size()));
    return names.isEmpty() ? 1 : 0;
}
