// Matches to draw and ways to look at what was drawn.
#pragma once

#include "render/ScoreboardImage.h"

#include <cmath>
#include <gtest/gtest.h>
#include <ostream>
#include <QImage>
#include <QPainter>

namespace pointloom {

inline void PrintTo(TemplateID id, std::ostream* stream) {
    *stream << rawValue(id);
}

inline MatchConfig matchBetween(const QString& name1, const QString& name2) {
    MatchConfig config;
    config.team1.player1 = name1;
    config.team2.player1 = name2;
    return config;
}

/// One letter each, so that sample points in the name column are free of text.
inline MatchConfig shortMatch() {
    return matchBetween(QStringLiteral("A"), QStringLiteral("B"));
}

inline ScoreState tennisScore(std::vector<SetScore> sets = {{6, 4, {}}, {6, 7, 5}, {3, 3, {}}}) {
    return {std::move(sets), {GamePoint::forty, GamePoint::thirty}, 1};
}

inline PointScoreState pointScore() {
    return {{{25, 21, {}}, {19, 25, {}}, {8, 7, {}}}, {14, 9}, 2};
}

inline SportScoreState scoreFor(TemplateID id) {
    if (usesTennisScoring(sportOf(id)))
        return tennisScore();
    return pointScore();
}

inline QImage transparentImage(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

inline bool isTransparent(const QImage& image) {
    return image == transparentImage(image.width(), image.height());
}

/// The bounding rectangle of all pixels for which `matches` holds.
template <class Predicate>
QRect pixelsWhere(const QImage& image, Predicate matches) {
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (matches(image.pixelColor(x, y)))
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

inline bool isNear(const QColor& actual, const QColor& expected, int tolerance = 3) {
    return std::abs(actual.red() - expected.red()) <= tolerance &&
           std::abs(actual.green() - expected.green()) <= tolerance &&
           std::abs(actual.blue() - expected.blue()) <= tolerance &&
           std::abs(actual.alpha() - expected.alpha()) <= tolerance;
}

}
