// Files that become markers: tables of scores, lists of points, DataVolley scout files, told apart by
// content.
#pragma once

#include "l10n/Language.h"
#include "persistence/CSVParser.h"
#include "persistence/DocumentFile.h"
#include "rules/MatchCount.h"

#include <array>

namespace pointloom {

/// The match that markers are for.
struct MatchStart {
    SportID sport = SportID::tennis;
    MatchRules rules;
    CountedScore score; // before the first point

    /// By the sport's usual rules when `words` (as for `rulesOfMatch`) leave the score to the user. Throws
    /// FormatError.
    static MatchStart of(const MatchConfig& config, std::span<const std::string> words = {},
                         const std::optional<SportScoreState>& initialScore = {});
};

struct MarkerFile {
    enum class Kind { table, points, scout };

    Kind kind = Kind::table;
    std::vector<MarkerOfLine> markers{}; // sorted by time
    QUuid firstPoint{};                  // the marker of the first point; null without markers
    std::vector<LineFault> leftOut{};    // by line
    std::array<QString, 2> teams{};      // of a scout file; empty where it has no names
    std::int64_t lineCount = 0;          // of a table, as in CSVParseError

    /// Throws DocumentError (unreadable, not a regular file, larger than 1 MB) and MarkerFileError.
    static MarkerFile read(const QString& path, const MatchStart& match);

    /// `read` of a file's content. `path` is only named in errors.
    static MarkerFile decode(const QByteArray& bytes, const QString& path, const MatchStart& match);

    std::vector<Marker> markersAlone() const;
};

/// The file as a whole is refused.
class MarkerFileError : public DocumentError {
public:
    MarkerFileError(const QString& path, L10nKey reason);

    /// `what()` in a language.
    QString in(Language language) const;

private:
    QString m_path;
    L10nKey m_reason;
};

/// "4, 9, 12"; of very many, the first and how many more: "4, 9 … (+30)".
QString joinLines(const std::vector<qint64>& lines);

/// Each reason with its lines, in the order of the first ones.
std::vector<std::pair<L10nKey, QString>> byReason(const std::vector<LineFault>& faults);

}
