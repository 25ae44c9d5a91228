#include "media/SisterFiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace pointloom::media {

namespace {

/// What a name says of its file's place in a recording.
struct PlaceByName {
    QString series; // the name without the number
    int number = 0;
    bool isCounter = false; // counts all clips of the camera, not the parts of one
};

struct NamePattern {
    const char* pattern; // of the name without its ending; the number is the group "n"
    bool isCounter;
};

// The first that matches counts.
constexpr std::array patterns{
    NamePattern{"^G[HXL](?<n>\\d\\d)\\d{4}$", false},                   // GH010123, GH020123
    NamePattern{"^GP(?<n>\\d\\d)\\d{4}$", false},                       // GP010123 after GOPR0123
    NamePattern{"^DJI_\\d{14}_(?<n>\\d{4})_[A-Z]$", true},              // DJI_20240511140000_0001_D
    NamePattern{"(?:part|pt|teil)[ _.-]?(?<n>\\d{1,3})(?!\\d)", false}, // final_part2
    NamePattern{" ?\\((?<n>\\d{1,3})\\)$", false},                      // VID (1) after VID
    NamePattern{"[ _-](?<n>\\d{1,3})$", false},                         // 20240511_140000_001
    NamePattern{"\\D(?<n>\\d{4,5})$", true},                            // DJI_0001, C0001
};

PlaceByName placeOf(const QString& name) {
    const QFileInfo file(name);
    const QString ending = u'.' + file.suffix().toLower();
    const QString stem = file.completeBaseName();
    static const QRegularExpression first(QStringLiteral("^GOPR(\\d{4})$"),
                                          QRegularExpression::CaseInsensitiveOption);
    if (const auto match = first.match(stem); match.hasMatch())
        return {QStringLiteral("gp#") + match.captured(1) + ending, 0, false};
    for (const NamePattern& row : patterns) {
        const QRegularExpression pattern(QString::fromLatin1(row.pattern),
                                         QRegularExpression::CaseInsensitiveOption);
        const auto match = pattern.match(stem);
        if (!match.hasMatch())
            continue;
        QString series = stem;
        const bool isInBrackets = stem.endsWith(u')');
        if (isInBrackets)
            series.truncate(match.capturedStart()); // as the name of the first, which has no number
        else
            series.replace(match.capturedStart(QStringLiteral("n")),
                           match.capturedLength(QStringLiteral("n")), QStringLiteral("#"));
        if (row.isCounter && series.startsWith(QStringLiteral("DJI_"), Qt::CaseInsensitive))
            series.replace(QRegularExpression(QStringLiteral("\\d{14}")), QString()); // the time differs
        return {series.toLower() + ending, match.captured(QStringLiteral("n")).toInt(), row.isCounter};
    }
    return {stem.toLower() + ending, 0, false};
}

/// Whether a file may continue the one before it, as far as it is known when they were made.
bool followsInTime(const FileFacts& file, const FileFacts& next, bool isCounter, qint64 bytes) {
    constexpr double shortPause = 5;                // seconds, of a camera that begins a new file
    constexpr double longPause = 60;                // of one whose files bear the same number
    constexpr qint64 largestOnCard = 3'500'000'000; // bytes; files end a little below 4 GiB
    const bool isFull = bytes >= largestOnCard;
    if (!file.createdAt || !next.createdAt || *file.createdAt == *next.createdAt)
        return !isCounter || isFull;
    const double apart = static_cast<double>(*next.createdAt - *file.createdAt) / 1000;
    // Some cameras write when a file was begun, some when it was ended.
    const double pause = std::min(std::abs(apart - file.length()), std::abs(apart - next.length()));
    return apart > 0 && pause <= (isCounter && !isFull ? shortPause : longPause);
}

bool continues(const QString& path, const QString& next, bool isCounter) {
    try {
        const FileFacts facts = factsOf(path);
        const FileFacts nextFacts = factsOf(next);
        const auto isInTheWay = [](Difference difference) {
            return difference != Difference::sound && difference != Difference::light;
        };
        return std::ranges::none_of(differences(facts.info, nextFacts.info), isInTheWay) &&
               followsInTime(facts, nextFacts, isCounter, QFileInfo(path).size());
    } catch (const MediaError&) {
        return false;
    }
}

}

QStringList sisterNames(const QString& name, const QStringList& namesInFolder) {
    const PlaceByName own = placeOf(name);
    std::vector<std::pair<int, QString>> series;
    for (const QString& other : namesInFolder) {
        if (const PlaceByName place = placeOf(other); place.series == own.series)
            series.emplace_back(place.number, other);
    }
    std::ranges::sort(series);
    const auto self = std::ranges::find(series, name, &std::pair<int, QString>::second);
    if (self == series.end())
        return {name};
    auto first = self;
    while (first != series.begin() && std::prev(first)->first == first->first - 1)
        --first;
    auto last = self;
    while (std::next(last) != series.end() && std::next(last)->first == last->first + 1)
        ++last;
    QStringList names;
    for (auto file = first; file != std::next(last); ++file)
        names += file->second;
    return names;
}

Recording recordingOf(const QString& path) {
    const QFileInfo file(path);
    const QDir folder = file.absoluteDir();
    const QStringList names = sisterNames(file.fileName(), folder.entryList(QDir::Files));
    const bool isCounter = placeOf(file.fileName()).isCounter;
    const auto self = static_cast<std::size_t>(names.indexOf(file.fileName()));
    std::vector<QString> paths;
    for (const QString& name : names)
        paths.push_back(folder.absoluteFilePath(name));
    std::size_t first = self;
    while (first > 0 && continues(paths[first - 1], paths[first], isCounter))
        --first;
    std::size_t last = self;
    while (last + 1 < paths.size() && continues(paths[last], paths[last + 1], isCounter))
        ++last;
    const std::vector<QString> files(paths.begin() + static_cast<std::ptrdiff_t>(first),
                                     paths.begin() + static_cast<std::ptrdiff_t>(last) + 1);
    return {files.front(), files};
}

Recording inOrder(const QStringList& paths) {
    struct Chosen {
        QString path;
        PlaceByName place;
        std::optional<std::int64_t> createdAt;
    };
    std::vector<Chosen> files;
    for (const QString& path : paths) {
        Chosen chosen{path, placeOf(QFileInfo(path).fileName()), std::nullopt};
        try {
            chosen.createdAt = factsOf(path).createdAt;
        } catch (const MediaError&) {
            // Opening it tells.
        }
        files.push_back(chosen);
    }
    QCollator natural;
    natural.setNumericMode(true);
    std::ranges::stable_sort(
        files, [&](const Chosen& a, const Chosen& b) { return natural.compare(a.path, b.path) < 0; });
    const auto isInSeries = [&](const Chosen& file) {
        return file.place.series == files.front().place.series;
    };
    const auto isDated = [](const Chosen& file) { return file.createdAt.has_value(); };
    if (std::ranges::all_of(files, isInSeries))
        std::ranges::stable_sort(files, {}, [](const Chosen& file) { return file.place.number; });
    else if (std::ranges::all_of(files, isDated))
        std::ranges::stable_sort(files, {}, &Chosen::createdAt);
    std::vector<QString> sorted;
    for (const Chosen& file : files)
        sorted.push_back(file.path);
    return {sorted.front(), sorted};
}

std::optional<double> gapBetween(const FileFacts& file, const FileFacts& next) {
    if (!file.createdAt || !next.createdAt || *file.createdAt == *next.createdAt)
        return std::nullopt;
    constexpr double coarse = 2; // seconds; files say whole seconds, some rounded up
    const double apart = static_cast<double>(*next.createdAt - *file.createdAt) / 1000;
    const double gap = apart - file.length();
    if (std::abs(gap) <= coarse || std::abs(apart - next.length()) <= coarse)
        return 0;
    return gap > 0 ? std::optional(gap) : std::nullopt;
}

}
