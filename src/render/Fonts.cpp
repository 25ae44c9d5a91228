#include "render/Fonts.h"

#include <array>
#include <QDirIterator>
#include <QFontDatabase>
#include <QHash>
#include <QStandardPaths>
#include <span>

namespace pointloom::Fonts {

namespace {

struct LoadedFonts {
    QString textFamily; // empty when neither candidate is complete
    QString emojiFamily;
    QStringList missing;
};

struct Candidate {
    const char* family;
    std::array<const char*, 2> regularFiles; // the same face in several formats, best first
    std::array<const char*, 2> boldFiles;
};

// Both have the glyph widths of Helvetica.
constexpr std::array candidates{
    Candidate{"Nimbus Sans",
              {"NimbusSans-Regular.otf", "NimbusSans-Regular.t1"},
              {"NimbusSans-Bold.otf", "NimbusSans-Bold.t1"}},
    Candidate{"Liberation Sans",
              {"LiberationSans-Regular.ttf", "LiberationSans-Regular.otf"},
              {"LiberationSans-Bold.ttf", "LiberationSans-Bold.otf"}},
};
constexpr const char* emojiName = "Noto Color Emoji";
constexpr const char* emojiFile = "NotoColorEmoji.ttf";

using FontFiles = QHash<QString, QString>; // path by file name

FontFiles findFontFiles();
QString loadFirst(std::span<const char* const> names, const FontFiles& files);

LoadedFonts load() {
    LoadedFonts fonts;
    const FontFiles files = findFontFiles();
    for (const Candidate& candidate : candidates) {
        const QString regular = loadFirst(candidate.regularFiles, files);
        const QString bold = loadFirst(candidate.boldFiles, files);
        if (!regular.isEmpty() && regular == bold) {
            fonts.textFamily = regular;
            break;
        }
    }
    if (fonts.textFamily.isEmpty()) {
        for (const Candidate& candidate : candidates)
            fonts.missing += QString::fromLatin1(candidate.family);
    }
    fonts.emojiFamily = loadFirst(std::array{emojiFile}, files);
    if (fonts.emojiFamily.isEmpty())
        fonts.missing += QString::fromLatin1(emojiName);
    return fonts;
}

FontFiles findFontFiles() {
    FontFiles files;
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::FontsLocation);
    folders += QStringLiteral("/usr/share/fonts");
    folders += QStringLiteral("/usr/local/share/fonts");
    folders.removeDuplicates();
    QStringList wanted{QString::fromLatin1(emojiFile)};
    for (const Candidate& candidate : candidates) {
        for (const char* name : candidate.regularFiles)
            wanted += QString::fromLatin1(name);
        for (const char* name : candidate.boldFiles)
            wanted += QString::fromLatin1(name);
    }
    for (const QString& folder : folders) {
        QDirIterator iterator(folder, wanted, QDir::Files, QDirIterator::Subdirectories);
        while (iterator.hasNext()) {
            const QString path = iterator.next();
            // The system's files win over a user's own copies, whatever the order of the folders.
            if (!files.contains(iterator.fileName()) || path.startsWith(u"/usr/share/"))
                files.insert(iterator.fileName(), path);
        }
    }
    return files;
}

/// The family of the first file that exists and can be read; empty for none.
QString loadFirst(std::span<const char* const> names, const FontFiles& files) {
    for (const char* name : names) {
        const QString path = files.value(QString::fromLatin1(name));
        if (path.isEmpty())
            continue;
        const QStringList families =
            QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(path));
        if (!families.isEmpty())
            return families.first();
    }
    return {};
}

const LoadedFonts& loaded() {
    static const LoadedFonts fonts = load();
    return fonts;
}

}

QFont shapingFont(FontFace face, int pixelSize) {
    const LoadedFonts& fonts = loaded();
    QStringList families;
    families += fonts.textFamily.isEmpty() ? QStringLiteral("sans-serif") : fonts.textFamily;
    if (hasFlags())
        families += fonts.emojiFamily;
    QFont font;
    font.setFamilies(families);
    font.setPixelSize(pixelSize);
    // By weight: a face requested by its full name falls back to another family.
    font.setWeight(face == FontFace::bold ? QFont::Bold : QFont::Normal);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QStringList missing() {
    return loaded().missing;
}

bool hasFlags() {
    return !loaded().emojiFamily.isEmpty();
}

}
