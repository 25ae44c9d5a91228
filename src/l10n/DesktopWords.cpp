#include "l10n/DesktopWords.h"

namespace pointloom {

namespace {

struct Words {
    QStringView control;
    QStringView shift;
    QStringView finder; // with the article or preposition that changes along with the noun
    QStringView folder;
};

Words words(Language language) {
    // clang-format off
    switch (language) {
    case Language::english:    return {u"Ctrl+", u"Shift+",    u"Finder",     u"Folder"};
    case Language::french:     return {u"Ctrl+", u"Maj+",      u"le Finder",  u"le dossier"};
    case Language::spanish:    return {u"Ctrl+", u"Mayús+",    u"el Finder",  u"la carpeta"};
    case Language::italian:    return {u"Ctrl+", u"Maiusc+",   u"nel Finder", u"nella cartella"};
    case Language::german:     return {u"Strg+", u"Umschalt+", u"Finder",     u"Ordner"};
    case Language::swedish:    return {u"Ctrl+", u"Skift+",    u"i Finder",   u"i mappen"};
    case Language::portuguese: return {u"Ctrl+", u"Shift+",    u"no Finder",  u"na pasta"};
    }
    // clang-format on
    return {};
}

}

QString forThisDesktop(QString text, Language language) {
    const auto desktop = words(language);
    text.replace(QStringLiteral("⌘"), desktop.control.toString());
    text.replace(QStringLiteral("⇧"), desktop.shift.toString());
    text.replace(desktop.finder.toString(), desktop.folder.toString());
    return text;
}

}
