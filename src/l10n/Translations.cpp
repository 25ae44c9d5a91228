#include "l10n/Translations.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

// In a static library nothing registers them by itself. The macro wants the global namespace.
static void registerTextFiles() {
    Q_INIT_RESOURCE(texts);
}

namespace pointloom {

void registerTexts() {
    registerTextFiles();
}

namespace {

std::map<L10nKey, QString> readTexts(Language language) {
    QFile file(QStringLiteral(":/texts/%1.json").arg(QString::fromUtf8(rawValue(language))));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
    std::map<L10nKey, QString> texts;
    for (const auto& [key, name] : RawValues<L10nKey>::table) {
        if (const auto text = object.find(QString::fromUtf8(name)); text != object.end())
            texts.emplace(key, text->toString());
    }
    return texts;
}

TranslationTable readTable() {
    registerTexts();
    TranslationTable table;
    for (const auto language : allCases<Language>())
        table.emplace(language, readTexts(language));
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

const TranslationTable& translations() {
    static const TranslationTable table = readTable();
    return table;
}

QString lookUp(const TranslationTable& table, Language language, L10nKey key) {
    if (const auto* text = find(table, language, key))
        return *text;
    if (const auto* text = find(table, Language::english, key))
        return *text;
    return u'[' + QString::fromUtf8(rawValue(key)) + u']';
}

}
