#include "sample/Crowd.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <QPainter>
#include <random>

namespace pointloom::sample {
namespace {

constexpr std::array<QRgb, 12> shirts{0xffe9e6df, 0xffd9dde3, 0xffc9473f, 0xff2f5d9b, 0xff24364f, 0xffe0b64a,
                                      0xff4f8a5b, 0xff7b5a8c, 0xff9aa6b2, 0xff3b3f46, 0xffe58a6b, 0xff6fb1c9};
constexpr std::array<QRgb, 5> skins{0xfff0c8a8, 0xffd9a47c, 0xffb9805a, 0xff8a5a3c, 0xff5d3b27};
constexpr std::array<QRgb, 6> hairs{0xff2a1e18, 0xff4b3323, 0xff80552f, 0xffc9a15c, 0xff8d8d8d, 0xfff2f2ee};

// In [0, 1). std's distributions differ between libraries, so the engine is used raw.
double fraction(std::mt19937& dice) {
    return static_cast<double>(dice()) / 4294967296.0;
}

QColor pick(const auto& colors, std::mt19937& dice) {
    return QColor(colors[dice() % colors.size()]);
}

QColor lit(const QColor& color, double light) {
    return QColor::fromRgbF(static_cast<float>(color.redF() * light),
                            static_cast<float>(color.greenF() * light),
                            static_cast<float>(color.blueF() * light));
}

}

Crowd::Crowd() {
    for (int row = standRows - 1; row >= 0; --row) {
        const double back = rowDepth * (row + 0.6);
        const double height = firstRowHeight + rowRise * row;
        const double far = farWall + back;
        fillRow({-24, far, height}, {24, far, height}, 0.96 - 0.03 * row);
        const double side = sideWall + back;
        fillRow({-side, farWall - 0.5, height}, {-side, -9, height}, 0.62); // in the shade
        fillRow({side, farWall - 0.5, height}, {side, -9, height}, 0.98);
    }
    std::stable_sort(m_spectators.begin(), m_spectators.end(),
                     [](const Spectator& a, const Spectator& b) { return a.seat.y > b.seat.y; });
}

void Crowd::fillRow(Point3 from, Point3 to, double light) {
    constexpr double seatWidth = 0.56; // metres
    const int seats = static_cast<int>(length(to - from) / seatWidth);
    for (int i = 0; i < seats; ++i) {
        if (fraction(m_dice) < 0.07)
            continue;
        Spectator spectator;
        spectator.seat = mix(from, to, (i + 0.35 + 0.3 * fraction(m_dice)) / seats);
        spectator.seat.z += 0.12 * (fraction(m_dice) - 0.5);
        spectator.phase = fraction(m_dice);
        spectator.clapsHigh = fraction(m_dice) < 0.3;
        spectator.light = light * (0.9 + 0.15 * fraction(m_dice));
        spectator.shirt = lit(pick(shirts, m_dice), spectator.light * 0.92);
        spectator.skin = lit(pick(skins, m_dice), spectator.light);
        spectator.hair = lit(pick(hairs, m_dice), spectator.light);
        m_spectators.push_back(spectator);
    }
}

void Crowd::paint(QPainter& painter, const Camera& camera, double phase, bool clapping) const {
    painter.setPen(Qt::NoPen);
    for (const Spectator& spectator : m_spectators) {
        const double turn = 2 * std::numbers::pi * (phase + spectator.phase);
        const double swing = clapping ? 0.05 : 0.018;
        const Point3 body = spectator.seat + Point3{swing * std::sin(turn), 0, 0.25};
        const double scale = camera.pixelsPerMetre(body);
        const QPointF chest = camera.project(body);
        const QPointF head =
            camera.project(body + Point3{swing * std::sin(turn), 0, 0.42 + swing * std::cos(turn)});
        painter.setBrush(spectator.shirt);
        painter.drawEllipse(chest, 0.24 * scale, 0.34 * scale);
        painter.setBrush(spectator.hair);
        painter.drawEllipse(head - QPointF(0, 0.035 * scale), 0.125 * scale, 0.13 * scale);
        painter.setBrush(spectator.skin);
        painter.drawEllipse(head + QPointF(0, 0.03 * scale), 0.105 * scale, 0.12 * scale);
        if (clapping) {
            const double apart = 0.07 + 0.07 * std::sin(turn * 2);
            const double height = spectator.clapsHigh ? 0.72 : 0.12;
            for (const double hand : {-apart, apart}) {
                const QPointF place = camera.project(body + Point3{hand, -0.25, height});
                painter.drawEllipse(place, 0.06 * scale, 0.075 * scale);
            }
        }
    }
}

}
