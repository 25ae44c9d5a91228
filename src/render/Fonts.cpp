#include "render/Fonts.h"

#include <algorithm>
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
// In the order of BoardFont, without the first.
constexpr std::array boardFonts{
    Candidate{"Nimbus Sans Narrow",
              {"NimbusSansNarrow-Regular.otf", "NimbusSansNarrow-Regular.t1"},
              {"NimbusSansNarrow-Bold.otf", "NimbusSansNarrow-Bold.t1"}},
    Candidate{"URW Gothic",
              {"URWGothic-Book.otf", "URWGothic-Book.t1"},
              {"URWGothic-Demi.otf", "URWGothic-Demi.t1"}},
    Candidate{"C059", {"C059-Roman.otf", "C059-Roman.t1"}, {"C059-Bold.otf", "C059-Bold.t1"}},
};
static_assert(boardFonts.size() + 1 == RawValues<BoardFont>::table.size());
constexpr const char* emojiName = "Noto Color Emoji";
constexpr const char* emojiFile = "NotoColorEmoji.ttf";

using FontFiles = QHash<QString, QString>; // path by file name

FontFiles findFontFiles();
QString loadFirst(std::span<const char* const> names, const FontFiles& files);
QString loadFamily(const Candidate& candidate, const FontFiles& files);

const FontFiles& fontFiles() {
    static const FontFiles files = findFontFiles();
    return files;
}

LoadedFonts load() {
    LoadedFonts fonts;
    const FontFiles& files = fontFiles();
    for (const Candidate& candidate : candidates) {
        fonts.textFamily = loadFamily(candidate, files);
        if (!fonts.textFamily.isEmpty())
            break;
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
    const auto want = [&](const Candidate& candidate) {
        for (const char* name : candidate.regularFiles)
            wanted += QString::fromLatin1(name);
        for (const char* name : candidate.boldFiles)
            wanted += QString::fromLatin1(name);
    };
    std::ranges::for_each(candidates, want);
    std::ranges::for_each(boardFonts, want);
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

/// The family, when both faces can be read; else empty.
QString loadFamily(const Candidate& candidate, const FontFiles& files) {
    const QString regular = loadFirst(candidate.regularFiles, files);
    return regular == loadFirst(candidate.boldFiles, files) ? regular : QString();
}

// Read when a board first uses it: what is loaded takes part in the choice of faces for other scripts.
const QString& boardFamily(BoardFont font) {
    static const auto families = [] {
        std::array<QString, boardFonts.size()> loadedFamilies;
        for (std::size_t i = 0; i < boardFonts.size(); ++i)
            loadedFamilies[i] = loadFamily(boardFonts[i], fontFiles());
        return loadedFamilies;
    }();
    return families[static_cast<std::size_t>(font) - 1];
}

const LoadedFonts& loaded() {
    static const LoadedFonts fonts = load();
    return fonts;
}

}

QFont shapingFont(FontFace face, int pixelSize, BoardFont family) {
    const LoadedFonts& fonts = loaded();
    QStringList families;
    if (family != BoardFont::sans && !boardFamily(family).isEmpty())
        families += boardFamily(family);
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
