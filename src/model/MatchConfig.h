// The sports, what the wizard offers for each, and the configuration of a match.
#pragma once

#include "model/BoardStyle.h"
#include "json/JsonFields.h"

#include <cstdint>
#include <optional>
#include <QString>
#include <QUrl>
#include <span>
#include <tuple>

namespace pointloom {

POINTLOOM_NAMED_ENUM(SportID, tennis, padel, volleyball, badminton, tableTennis, squash, pickleball);

QString displayName(SportID sport);

/// One emoji; padel has the tennis ball too.
QString emoji(SportID sport);

/// Name of the sport's image among the application's resources.
QString imageName(SportID sport);

/// True for the sports that count 15, 30, 40 inside sets; all others count plain points.
bool usesTennisScoring(SportID sport);

bool supportsDoubles(SportID sport);

/// The set counts ("best of N") that a match can have, in the order in which they are offered.
std::span<const std::int64_t> numberOfSetsOptions(SportID sport);

std::int64_t defaultNumberOfSets(SportID sport);

POINTLOOM_NAMED_ENUM(MatchFormat, singles, doubles);

/// One side of a match.
struct TeamConfig {
    QString player1; // the player, or the first of a pair
    std::optional<QString> player2;
    std::optional<QString> flag1; // two-letter country code (ISO 3166-1) of player 1
    std::optional<QString> flag2; // of player 2

    /// "Player 1 / Player 2", or player 1 alone when there is no second name.
    QString displayName() const;

    /// The name as a scoreboard shows it, flags first; the second player only in doubles.
    QString flagDisplayName(MatchFormat format) const;

    bool operator==(const TeamConfig&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("player1", &TeamConfig::player1),
                          json::field("player2", &TeamConfig::player2),
                          json::field("flag1", &TeamConfig::flag1), json::field("flag2", &TeamConfig::flag2)};
    }
};

struct MatchConfig {
    SportID sport = SportID::tennis;
    MatchFormat format = MatchFormat::singles;
    TeamConfig team1;
    TeamConfig team2;
    std::int64_t numberOfSets = 1;
    std::optional<QUrl> logoURL;       // club or tournament logo, an image on disk
    std::optional<BoardStyle> board{}; // how the scoreboard differs from its template

    bool operator==(const MatchConfig&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("sport", &MatchConfig::sport),
                          json::field("format", &MatchConfig::format),
                          json::field("team1", &MatchConfig::team1),
                          json::field("team2", &MatchConfig::team2),
                          json::field("numberOfSets", &MatchConfig::numberOfSets),
                          json::field("logoURL", &MatchConfig::logoURL),
                          json::field("board", &MatchConfig::board)};
    }
};

/// "Dravnik – Solvane", as in titles and names of files.
QString displayName(const MatchConfig& match);

/// The largest set count for which an empty score is built and a scoreboard drawn.
constexpr std::int64_t largestNumberOfSets = 99;

}
