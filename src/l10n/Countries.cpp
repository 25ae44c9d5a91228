#include "l10n/Countries.h"

#include "l10n/Translations.h"

#include <algorithm>
#include <QCollator>
#include <QFile>
#include <QStringList>

namespace pointloom {

namespace {

// How well a text fits a country, the best first.
enum class Fit { code, name, word, otherName, none };

struct Row {
    QString code;
    QStringList names; // in the order of the languages
    QStringList others;
};

// A table with a row for each country: code, a name for each language, other names between bars.
std::vector<Row> readRows() {
    registerTexts();
    QFile file(QStringLiteral(":/texts/countries.tsv"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    constexpr qsizetype languages = RawValues<Language>::table.size();
    std::vector<Row> rows;
    file.readLine(); // the head
    while (!file.atEnd()) {
        const QStringList cells = QString::fromUtf8(file.readLine()).trimmed().split(u'\t');
        rows.push_back({cells.front(), cells.mid(1, languages),
                        cells.value(languages + 1).split(u'|', Qt::SkipEmptyParts)});
    }
    return rows;
}

const std::vector<Row>& rows() {
    static const std::vector<Row> read = readRows();
    return read;
}

// Without case and accents, words apart by one space.
QString plain(const QString& text) {
    QString result;
    for (const QChar character : text.normalized(QString::NormalizationForm_KD)) {
        if (character.isLetterOrNumber())
            result += character;
        else if (!character.isMark())
            result += u' ';
    }
    return result.toCaseFolded().simplified();
}

bool hasWordLike(const QString& name, const QString& typed) {
    const QString words = plain(name);
    return words.startsWith(typed) || words.contains(u' ' + typed);
}

// `typed` is plain.
Fit fitOf(const Row& row, const QString& typed, Language language) {
    if (typed.isEmpty())
        return Fit::none;
    const auto isTyped = [&](const QString& name) { return plain(name) == typed; };
    const auto isLike = [&](const QString& name) { return hasWordLike(name, typed); };
    const QString& name = row.names[static_cast<qsizetype>(language)];
    if (isTyped(row.code) || isTyped(name) || std::ranges::any_of(row.others, isTyped))
        return Fit::code;
    if (plain(name).startsWith(typed))
        return Fit::name;
    if (isLike(name))
        return Fit::word;
    if (isLike(row.names.front()) || std::ranges::any_of(row.others, isLike))
        return Fit::otherName;
    return Fit::none;
}

}

std::vector<Country> findCountries(const QString& typed, Language language) {
    struct Found {
        Fit fit;
        Country country;
    };
    const QString wanted = plain(typed);
    std::vector<Found> found;
    for (const Row& row : rows()) {
        const Fit fit = typed.isEmpty() ? Fit::name : fitOf(row, wanted, language);
        if (fit != Fit::none)
            found.push_back({fit, {row.code, row.names[static_cast<qsizetype>(language)]}});
    }
    const QCollator byName(localeOf(language));
    std::ranges::sort(found, [&](const Found& one, const Found& other) {
        return one.fit != other.fit ? one.fit < other.fit
                                    : byName.compare(one.country.name, other.country.name) < 0;
    });
    std::vector<Country> countries;
    for (Found& each : found)
        countries.push_back(std::move(each.country));
    return countries;
}

std::optional<Country> countryOf(const QString& code, Language language) {
    for (const Row& row : rows()) {
        const QString upper = code.toUpper();
        if (upper == row.code || row.others.contains(upper))
            return Country{row.code, row.names[static_cast<qsizetype>(language)]};
    }
    return std::nullopt;
}

}
