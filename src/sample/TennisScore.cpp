#include "sample/TennisScore.h"

#include <cstdlib>

namespace pointloom::sample {
namespace {

bool isWon(const std::array<int, 2>& count, int needed) {
    return std::max(count[0], count[1]) >= needed && std::abs(count[0] - count[1]) >= 2;
}

}

TennisScore::TennisScore()
    : m_sets{{6, 4}, {4, 4}} {}

void TennisScore::pointTo(std::size_t team) {
    if (isOver())
        return;
    ++m_points[team];
    if (!isWon(m_points, 4))
        return;
    m_points = {0, 0};
    m_server = 1 - m_server;
    ++m_sets.back()[team];
    if (isWon(m_sets.back(), 6) && !isOver())
        m_sets.push_back({0, 0});
}

bool TennisScore::isOver() const {
    Pair setsWon{0, 0};
    for (const Pair& set : m_sets) {
        if (isWon(set, 6))
            ++setsWon[set[0] > set[1] ? 0 : 1];
    }
    return std::max(setsWon[0], setsWon[1]) == 2;
}

QByteArray TennisScore::csvFields() const {
    QByteArray fields = QByteArray::number(m_server + 1) + ',' + pointWord(0) + ',' + pointWord(1);
    for (std::size_t set = 0; set < 3; ++set) {
        const Pair games = set < m_sets.size() ? m_sets[set] : Pair{0, 0};
        fields += ',' + QByteArray::number(games[0]) + ',' + QByteArray::number(games[1]);
    }
    return fields;
}

QByteArray TennisScore::pointWord(std::size_t team) const {
    const int own = m_points[team];
    const int other = m_points[1 - team];
    if (own >= 3 && other >= 3) {
        if (own == other)
            return "deuce";
        return own > other ? "ad" : "40";
    }
    constexpr std::array words{"0", "15", "30", "40"};
    return words[static_cast<std::size_t>(std::min(own, 3))];
}

}
