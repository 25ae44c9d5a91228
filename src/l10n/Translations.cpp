#include "l10n/Translations.h"

namespace pointloom {

namespace {

TranslationTable buildTable() {
    TranslationTable table;
    for (const auto language : allCases<Language>()) {
        auto& texts = table[language];
        for (const auto& [key, text] : textList(language))
            texts.emplace(key, text.toString());
    }
    return table;
}

const QString* find(const TranslationTable& table, Language language, L10nKey key) {
    const auto texts = table.find(language);
    if (texts == table.end())
        return nullptr;
    const auto text = texts->second.find(key);
    return text == texts->second.end() ? nullptr : &text->second;
}

}

TextList textList(Language language) {
    switch (language) {
    case Language::english:
        return texts::english();
    case Language::french:
        return texts::french();
    case Language::spanish:
        return texts::spanish();
    case Language::italian:
        return texts::italian();
    case Language::german:
        return texts::german();
    case Language::swedish:
        return texts::swedish();
    case Language::portuguese:
        return texts::portuguese();
    }
    return {};
}

const TranslationTable& translations() {
    static const TranslationTable table = buildTable();
    return table;
}

QString lookUp(const TranslationTable& table, Language language, L10nKey key) {
    if (const auto* text = find(table, language, key))
        return *text;
    if (const auto* text = find(table, Language::english, key))
        return *text;
    return u'[' + caseName(key) + u']';
}

}
