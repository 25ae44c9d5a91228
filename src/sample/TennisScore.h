// Counts points, games and sets as tennis does, so that the sample's markers advance as a match would.
#pragma once

#include <array>
#include <QByteArray>
#include <vector>

namespace pointloom::sample {

/// Advantage sets, best of three. Index 0 is team 1.
class TennisScore {
public:
    /// In the second set at 4 games all and 30 all, team 1 serving: a point from everything.
    TennisScore();

    void pointTo(std::size_t team);

    std::size_t server() const { return m_server; }
    bool servesFromDeuceCourt() const { return (m_points[0] + m_points[1]) % 2 == 0; }
    bool isOver() const;

    /// Serving team, both points, and the games of three sets, separated by commas.
    QByteArray csvFields() const;

private:
    using Pair = std::array<int, 2>;

    QByteArray pointWord(std::size_t team) const;

    std::vector<Pair> m_sets;
    Pair m_points{2, 2};
    std::size_t m_server = 0;
};

}
