#include "l10n/Translations.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

using namespace pointloom;

namespace {

constexpr auto allKeys = allCases<L10nKey>();

std::string shown(Language language, L10nKey key) {
    return t(language, key).toStdString();
}

/// Calls `check(language, key, English text, text in the language)` for every text, naming it on failure.
template <class Check>
void forEveryText(Check check) {
    for (const auto language : allCases<Language>()) {
        for (const auto key : allKeys) {
            SCOPED_TRACE(std::string(rawValue(language)) + " " + std::string(rawValue(key)));
            check(language, key, t(Language::english, key), t(language, key));
        }
    }
}

}

TEST(Translations, EveryFileHasEveryKeyOnceInTheOrderOfTheEnglishOne) {
    const QRegularExpression line(QStringLiteral("^    \"(\\w+)\": \".+\",?$"));
    for (const auto language : allCases<Language>()) {
        const std::string code(rawValue(language));
        SCOPED_TRACE(code + ".json");
        QFile file(QStringLiteral(":/texts/%1.json").arg(QString::fromStdString(code)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QJsonParseError fault;
        QJsonDocument::fromJson(bytes, &fault);
        ASSERT_EQ(fault.error, QJsonParseError::NoError)
            << fault.errorString().toStdString() << " in line " << bytes.first(fault.offset).count('\n') + 1;

        std::vector<std::string> keys;
        for (const QString& text : QString::fromUtf8(bytes).split(u'\n', Qt::SkipEmptyParts)) {
            if (text == u"{" || text == u"}")
                continue;
            const auto match = line.match(text);
            ASSERT_TRUE(match.hasMatch())
                << "not a line of the form \"key\": \"text\": " << text.toStdString();
            keys.push_back(match.captured(1).toStdString());
        }
        for (std::size_t i = 0; i < std::min(keys.size(), allKeys.size()); ++i)
            ASSERT_EQ(keys[i], rawValue(allKeys[i])) << "is the first key out of place";
        ASSERT_EQ(keys.size(), allKeys.size());
    }
}

TEST(Translations, TheFirstKeysAreThoseOfTheFirstRelease) {
    const auto name = [](std::size_t index) { return rawValue(allKeys.at(index)); };
    EXPECT_EQ(name(0), "continueBtn");
    EXPECT_EQ(name(7), "optional_");
    EXPECT_EQ(name(109), "downloadSampleCSV");
}

TEST(Translations, TextsAreShownInTheirLanguage) {
    struct Row {
        L10nKey key;
        std::array<const char*, 7> texts;
    };
    using enum L10nKey;
    // clang-format off
    const Row rows[] = {
        {continueBtn, {"Continue", "Continuer", "Continuar", "Continua", "Weiter", "Fortsätt", "Continuar"}},
        {templatesCount, {"%d templates", "%d templates", "%d plantillas", "%d template", "%d Vorlagen",
                          "%d mallar", "%d modelos"}},
        {egDravnik, {"e.g. Dravnik", "ex. Dravnik", "ej. Dravnik", "es. Dravnik", "z.B. Dravnik",
                     "t.ex. Dravnik", "ex. Dravnik"}},
        {markersSection, {"Markers (%d)", "Marqueurs (%d)", "Marcadores (%d)", "Marker (%d)", "Marker (%d)",
                          "Markörer (%d)", "Marcadores (%d)"}},
        {couldNotReadFile, {"Could not read file: %@", "Impossible de lire le fichier : %@",
                            "No se pudo leer el archivo: %@", "Impossibile leggere il file: %@",
                            "Datei konnte nicht gelesen werden: %@", "Kunde inte läsa filen: %@",
                            "Não foi possível ler o ficheiro: %@"}},
        {noMarkersWarning, {"No markers — the scoreboard will be static.",
                            "Aucun marqueur — le score sera statique.",
                            "Sin marcadores — el marcador será estático.",
                            "Nessun marker — il tabellone sarà statico.",
                            "Keine Marker — das Anzeigebrett ist statisch.",
                            "Inga markörer — resultattavlan blir statisk.",
                            "Sem marcadores — o placar será estático."}},
        {helpTitle, {"Pointloom Help", "Aide Pointloom", "Ayuda de Pointloom", "Guida di Pointloom",
                     "Pointloom Hilfe", "Pointloom Hjälp", "Ajuda do Pointloom"}},
    };
    // clang-format on
    constexpr auto languages = allCases<Language>();
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < languages.size(); ++i)
            EXPECT_EQ(shown(languages[i], row.key), row.texts[i]);
    }
    EXPECT_EQ(shown(Language::french, resetTooltip), "Recommencer depuis le début");
    EXPECT_EQ(shown(Language::french, resetConfirm), "Recommencer");
}

TEST(Translations, PlaceholdersLinesAndSymbolsAreTheSameInEveryLanguage) {
    const QStringView kept[] = {u"%",   u"%d", u"%@",  u"\n",  u"\n\n", u"• ",  u"— ",       u"⌘⇧E",
                                u"← →", u"…",  u"CSV", u"MP4", u"MOV",  u"M4V", u"Pointloom"};
    forEveryText([&](Language, L10nKey, const QString& english, const QString& text) {
        for (const auto part : kept)
            EXPECT_EQ(text.count(part), english.count(part)) << part.toUtf8().constData();
    });
    for (const auto language : allCases<Language>()) {
        EXPECT_TRUE(
            t(language, L10nKey::helpCSVDetail)
                .endsWith(u": startTime, label, servingTeam, game_team1, game_team2, set1_t1, set1_t2, …"))
            << rawValue(language);
    }
}

TEST(Translations, TextsEndInTheSameMarkAndHaveNoStraySpaces) {
    forEveryText([](Language, L10nKey key, const QString& english, const QString& text) {
        ASSERT_FALSE(text.isEmpty());
        EXPECT_EQ(text, text.trimmed());
        EXPECT_FALSE(text.contains(u"  "));
        if (key == L10nKey::editorServeShort)
            return; // an abbreviation in some
        for (const auto mark : {u'.', u'?', u'…', u')'})
            EXPECT_EQ(text.endsWith(mark), english.endsWith(mark)) << text.toStdString();
    });
}

TEST(Translations, ButtonsStayShort) {
    using enum L10nKey;
    const L10nKey buttons[] = {continueBtn, back,        cancel,       done,         retry,
                               reset,       remove,      resetConfirm, chooseLogo,   changeLogo,
                               removeLogo,  changeVideo, openEditor,   setServe,     addMarker,
                               exportVideo, editMarker,  previewFrame, deleteMarker, importMarkersCSV,
                               startExport, helpTitle,   showInFinder, generating,   downloadSampleCSV};
    for (const auto language : allCases<Language>()) {
        for (const auto key : buttons) {
            const auto text = t(language, key);
            EXPECT_LE(text.size(), 2 * t(Language::english, key).size() + 8) << text.toStdString();
        }
    }
}

TEST(Translations, HelpNamesEachScreenByItsTitle) {
    using enum L10nKey;
    const std::pair<L10nKey, L10nKey> steps[] = {{helpStep0, chooseSport},
                                                 {helpStep1, chooseTemplate},
                                                 {helpStep2, matchConfig},
                                                 {helpStep3, importVideo}};
    for (const auto language : allCases<Language>()) {
        auto number = 0;
        for (const auto& [step, title] : steps) {
            const auto ending = QStringLiteral(" %1 — %2").arg(++number).arg(t(language, title));
            EXPECT_TRUE(t(language, step).endsWith(ending)) << shown(language, step);
        }
        EXPECT_TRUE(t(language, helpStep4).contains(u" 5 — ")) << shown(language, helpStep4);
    }
}

TEST(Translations, EachLanguageKeepsItsOwnConventions) {
    const QRegularExpression frenchMarkWithoutSpace(QStringLiteral("\\S[:?!;](\\s|$)"));
    const QRegularExpression brazilian(QStringLiteral("\\b(arquivo|esporte|equipe|você|quadro)s?\\b"),
                                       QRegularExpression::CaseInsensitiveOption |
                                           QRegularExpression::UseUnicodePropertiesOption);
    for (const auto key : allKeys) {
        EXPECT_FALSE(t(Language::french, key).contains(frenchMarkWithoutSpace))
            << shown(Language::french, key);
        EXPECT_FALSE(t(Language::portuguese, key).contains(brazilian)) << shown(Language::portuguese, key);
        const auto spanish = t(Language::spanish, key);
        EXPECT_EQ(spanish.count(u'?'), spanish.count(u'¿')) << spanish.toStdString();
    }
}

TEST(Lookup, AKeyMissingInOneLanguageIsShownInEnglish) {
    auto table = translations();
    table.at(Language::french).erase(L10nKey::marker);
    EXPECT_EQ(lookUp(table, Language::french, L10nKey::marker).toStdString(), "Marker");
    EXPECT_EQ(lookUp(table, Language::french, L10nKey::markers).toStdString(), "Marqueurs");
    EXPECT_EQ(lookUp(table, Language::portuguese, L10nKey::marker).toStdString(), "Marcador");
}

TEST(Lookup, ALanguageWithoutAnyTextsIsShownInEnglish) {
    auto table = translations();
    table.erase(Language::german);
    EXPECT_EQ(lookUp(table, Language::german, L10nKey::continueBtn).toStdString(), "Continue");
}

TEST(Lookup, AKeyWithoutAnyTextShowsItsNameInBrackets) {
    auto table = translations();
    for (auto& [language, texts] : table)
        texts.erase(L10nKey::marker);
    EXPECT_EQ(lookUp(table, Language::swedish, L10nKey::marker).toStdString(), "[marker]");
    EXPECT_EQ(lookUp({}, Language::english, L10nKey::optional_).toStdString(), "[optional_]");
}

TEST(Lookup, ATextOnlyAnotherLanguageHasIsNotBorrowed) {
    const TranslationTable table{{Language::french, {{L10nKey::marker, QStringLiteral("Marqueur")}}}};
    EXPECT_EQ(lookUp(table, Language::spanish, L10nKey::marker).toStdString(), "[marker]");
}
