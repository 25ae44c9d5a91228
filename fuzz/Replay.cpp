// Replays every file of some folders once, in builds without libFuzzer: the corpus, and what was found and
// mended. Usage: replay_TARGET FOLDER...
#include "FuzzTarget.h"

#include <QDir>
#include <QFile>

using namespace pointloom;

namespace {

/// The number of inputs tried; empty folders and missing ones have none.
int replay(const QDir& folder) {
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        fuzz::require(file.open(QIODevice::ReadOnly),
                      qUtf8Printable(file.fileName() + QStringLiteral(" can be read")));
        std::printf("%s\n", qUtf8Printable(name)); // the last one named is the one that failed
        std::fflush(stdout);
        const QByteArray content = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.constData()),
                               static_cast<std::size_t>(content.size()));
    }
    return static_cast<int>(names.size());
}

}

int main(int argumentCount, char** arguments) {
    int inputs = 0;
    for (int i = 1; i < argumentCount; ++i)
        inputs += replay(QDir(QFile::decodeName(arguments[i])));
    std::printf("%d inputs\n", inputs);
    return inputs == 0 ? 1 : 0;
}
