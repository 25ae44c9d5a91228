#include "sample/Figure.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <span>

namespace pointloom::sample {
namespace {

constexpr double pi = std::numbers::pi;

/// A player's own axes: right, forward, up.
struct Body {
    Point3 origin;
    double forward; // +1 or -1 along the court

    Point3 at(Point3 own) const { return origin + direction(own); }
    Point3 direction(Point3 own) const { return {own.x * forward, own.y * forward, own.z}; }
};

/// One moment of a swing, in the player's own axes.
struct SwingKey {
    double time; // seconds from contact
    Point3 hand;
    Point3 racket; // direction from the hand to the head
    Point3 otherHand;
    double turn; // of the shoulders, radians, positive toward the racket's side
};

constexpr SwingKey ready{0, {0.12, 0.36, 1.0}, {-0.35, 0.75, 0.55}, {-0.06, 0.42, 1.06}, 0};

constexpr SwingKey readyAt(double time) {
    SwingKey key = ready;
    key.time = time;
    return key;
}

constexpr std::array forehand{
    readyAt(-0.62),
    SwingKey{-0.32, {0.52, -0.30, 1.15}, {0.25, -0.75, 0.6}, {-0.1, 0.45, 1.15}, 1.0},
    SwingKey{-0.10, {0.56, -0.16, 0.92}, {0.55, -0.8, -0.15}, {-0.35, 0.40, 1.2}, 0.8},
    SwingKey{0, {0.42, 0.25, 0.96}, {0.95, 0.25, 0.03}, {-0.42, 0.2, 1.2}, 0.2},
    SwingKey{0.12, {0.05, 0.48, 1.22}, {-0.05, 0.85, 0.5}, {-0.4, 0.05, 1.15}, -0.5},
    SwingKey{0.30, {-0.26, 0.24, 1.46}, {-0.55, -0.55, 0.6}, {-0.3, 0.1, 1.15}, -0.8},
    readyAt(0.65),
};

constexpr std::array backhand{
    readyAt(-0.62),
    SwingKey{-0.32, {-0.36, -0.12, 1.12}, {-0.35, -0.8, 0.45}, {-0.38, -0.2, 1.16}, -1.1},
    SwingKey{-0.10, {-0.40, -0.02, 0.92}, {-0.7, -0.7, -0.15}, {-0.44, -0.1, 0.94}, -0.9},
    SwingKey{0, {-0.40, 0.27, 0.96}, {-0.95, 0.2, 0.03}, {-0.5, 0.28, 0.97}, -0.4},
    SwingKey{0.12, {0.08, 0.46, 1.22}, {0.25, 0.8, 0.5}, {-0.02, 0.5, 1.22}, 0.3},
    SwingKey{0.30, {0.42, 0.22, 1.48}, {0.6, -0.5, 0.6}, {0.2, 0.3, 1.42}, 0.7},
    readyAt(0.65),
};

constexpr std::array serve{
    SwingKey{-0.95, {0.10, 0.38, 1.0}, {-0.1, 0.9, 0.4}, {-0.1, 0.4, 1.05}, 0.3},
    SwingKey{-0.70, {0.25, 0.15, 0.92}, {0.3, 0.6, -0.6}, {-0.15, 0.38, 1.35}, 0.6},
    SwingKey{-0.38, {0.46, -0.22, 1.52}, {0.05, -0.35, 0.93}, {-0.22, 0.28, 1.98}, 1.0},
    SwingKey{-0.13, {0.36, -0.16, 1.78}, {0.1, -0.55, -0.82}, {-0.18, 0.28, 1.62}, 0.7},
    SwingKey{0, {0.22, 0.13, 2.08}, {0.06, 0.16, 0.98}, {-0.1, 0.22, 1.15}, 0},
    SwingKey{0.12, {0.02, 0.52, 1.5}, {-0.2, 0.8, -0.5}, {-0.1, 0.15, 1.1}, -0.4},
    SwingKey{0.30, {-0.30, 0.34, 0.9}, {-0.4, 0.1, -0.9}, {-0.2, 0.12, 1.1}, -0.7},
    readyAt(0.70),
};

std::span<const SwingKey> swingOf(Stroke::Kind kind) {
    switch (kind) {
    case Stroke::Kind::serve:
        return serve;
    case Stroke::Kind::forehand:
        return forehand;
    case Stroke::Kind::backhand:
        return backhand;
    }
    return {};
}

SwingKey swingAt(const PlayerState& state) {
    if (!state.stroke)
        return ready;
    const std::span<const SwingKey> keys = swingOf(state.stroke->kind);
    const double time = state.strokeTime;
    if (time <= keys.front().time)
        return keys.front();
    if (time >= keys.back().time)
        return keys.back();
    const auto next =
        std::find_if(keys.begin(), keys.end(), [&](const SwingKey& key) { return key.time > time; });
    const SwingKey& before = *std::prev(next);
    const double share = (time - before.time) / (next->time - before.time);
    return {time, mix(before.hand, next->hand, share), mix(before.racket, next->racket, share),
            mix(before.otherHand, next->otherHand, share), std::lerp(before.turn, next->turn, share)};
}

/// The joint between two bones that reach from `root` toward `tip`, bent toward `pole`; `tip` is drawn in
/// when it is out of reach.
Point3 joint(Point3 root, Point3& tip, double upper, double lower, Point3 pole) {
    const Point3 span = tip - root;
    const double reach = std::clamp(length(span), 0.05, (upper + lower) * 0.999);
    const Point3 along = normalized(span);
    tip = root + along * reach;
    const double foot = (upper * upper - lower * lower + reach * reach) / (2 * reach);
    const double height = std::sqrt(std::max(0.0, upper * upper - foot * foot));
    return root + along * foot + normalized(pole - along * dot(pole, along)) * height;
}

void addLeg(Figure& figure, const Body& body, const Outfit& outfit, Point3 hip, Point3 foot) {
    const Point3 root = body.at(hip);
    Point3 ankle = body.at(foot + Point3{0, 0, 0.08});
    const Point3 knee = joint(root, ankle, 0.46, 0.44, body.direction({0, 1, 0.1}));
    const Point3 hem = mix(root, knee, 0.7);
    figure.limbs.push_back({hem, knee, 0.078, 0.062, outfit.skin});
    figure.limbs.push_back({root, hem, 0.115, 0.105, outfit.shorts});
    figure.limbs.push_back({knee, ankle, 0.058, 0.040, outfit.skin});
    figure.limbs.push_back({mix(knee, ankle, 0.8), ankle, 0.046, 0.046, QColor(240, 240, 240)});
    figure.limbs.push_back({ankle - Point3{0, 0, 0.03}, ankle + body.direction({0, 0.17, -0.04}), 0.052,
                            0.042, QColor(250, 250, 252)});
}

Point3 addArm(Figure& figure, const Body& body, const Outfit& outfit, Point3 shoulder, Point3 hand,
              double outward) {
    const Point3 root = body.at(shoulder);
    Point3 tip = body.at(hand);
    const Point3 elbow = joint(root, tip, 0.31, 0.29, body.direction({outward, -0.4, -0.8}));
    const Point3 cuff = mix(root, elbow, 0.6);
    figure.limbs.push_back({cuff, elbow, 0.049, 0.043, outfit.skin});
    figure.limbs.push_back({root, cuff, 0.073, 0.064, outfit.shirt});
    figure.limbs.push_back({elbow, tip, 0.042, 0.032, outfit.skin});
    figure.limbs.push_back({tip, tip, 0.042, 0.042, outfit.skin});
    return tip;
}

void addTrunk(Figure& figure, const Body& body, const Outfit& outfit, Point3 hips, Point3 chest,
              Point3 shoulders) {
    const Point3 low = body.at(hips);
    const Point3 high = body.at(chest);
    figure.limbs.push_back({low, mix(low, high, 0.2), 0.15, 0.15, outfit.shorts});
    figure.limbs.push_back({mix(low, high, 0.18), high, 0.145, 0.165, outfit.shirt});
    figure.limbs.push_back(
        {body.at(chest - shoulders), body.at(chest + shoulders), 0.082, 0.082, outfit.shirt});
    const Point3 head = chest + Point3{0, 0.05, 0.31};
    figure.limbs.push_back(
        {body.at(chest + Point3{0, 0.01, 0.08}), body.at(head), 0.055, 0.055, outfit.skin});
    figure.limbs.push_back({body.at(head), body.at(head + Point3{0, 0.01, 0.05}), 0.098, 0.098, outfit.skin});
    figure.limbs.push_back({body.at(head + Point3{0, -0.03, 0.03}), body.at(head + Point3{0, -0.015, 0.085}),
                            0.098, 0.1, outfit.hair});
}

/// The outline of two circles and what lies between them.
QPolygonF capsule(QPointF from, double fromRadius, QPointF to, double toRadius) {
    const double angle = std::atan2(to.y() - from.y(), to.x() - from.x());
    constexpr int steps = 8;
    QPolygonF outline;
    for (int i = 0; i <= steps; ++i) {
        const double turn = angle - pi / 2 + pi * i / steps;
        outline << to + QPointF(std::cos(turn), std::sin(turn)) * toRadius;
    }
    for (int i = 0; i <= steps; ++i) {
        const double turn = angle + pi / 2 + pi * i / steps;
        outline << from + QPointF(std::cos(turn), std::sin(turn)) * fromRadius;
    }
    return outline;
}

void paintLimb(QPainter& painter, const Camera& camera, const Limb& limb) {
    const QPointF from = camera.project(limb.from);
    const QPointF to = camera.project(limb.to);
    const double fromRadius = limb.fromRadius * camera.pixelsPerMetre(limb.from);
    const double toRadius = limb.toRadius * camera.pixelsPerMetre(limb.to);

    // Lit from the upper left.
    const QPointF middle = (from + to) / 2;
    const double radius = std::max(fromRadius, toRadius);
    const QPointF light = QPointF(-0.85, -0.55) * radius;
    QLinearGradient shade(middle + light, middle - light);
    shade.setColorAt(0, limb.color.lighter(118));
    shade.setColorAt(0.55, limb.color);
    shade.setColorAt(1, limb.color.darker(150));
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawPolygon(capsule(from, fromRadius, to, toRadius));
}

constexpr double racketNeck = 0.32; // metres from the hand to the head's lower edge
constexpr double racketHeadLength = 0.36;
constexpr double racketHeadWidth = 0.27;

QPolygonF racketHead(const Racket& racket, const auto& project) {
    QPolygonF outline;
    constexpr int corners = 24;
    for (int i = 0; i < corners; ++i) {
        const double turn = 2 * pi * i / corners;
        const double along = racketNeck + racketHeadLength / 2 * (1 + std::cos(turn));
        const double across = racketHeadWidth / 2 * std::sin(turn);
        outline << project(racket.hand + racket.direction * along + racket.side * across);
    }
    return outline;
}

void paintRacket(QPainter& painter, const Camera& camera, const Racket& racket) {
    const double scale = camera.pixelsPerMetre(racket.hand);
    const auto project = [&](Point3 point) { return camera.project(point); };
    painter.setPen(QPen(QColor(30, 30, 34), 0.035 * scale, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(project(racket.hand), project(racket.hand + racket.direction * racketNeck));
    painter.setBrush(QColor(235, 240, 230, 70));
    painter.setPen(QPen(QColor(200, 40, 50), 0.028 * scale));
    painter.drawPolygon(racketHead(racket, project));
}

}

Figure playerFigure(Side side, const PlayerState& state, const Outfit& outfit, double stridePhase,
                    double time) {
    const Body body{state.position, facing(side)};
    const double speed = length(state.velocity);
    const double running = std::min(1.0, speed / 3.5);
    const Point3 heading = body.direction(normalized(state.velocity)); // turning twice is turning back
    SwingKey swing = swingAt(state);

    // The winner's fist goes up; a receiver who waits is on the toes.
    swing.hand = mix(swing.hand, {0.36, 0.2, 1.92}, state.celebration);
    swing.racket = mix(swing.racket, {0.2, 0.1, 1}, state.celebration);
    swing.otherHand = mix(swing.otherHand, {-0.34, 0.3, 1.5}, state.celebration);
    const bool isServing = state.stroke && state.stroke->kind == Stroke::Kind::serve;
    const double stretch = isServing ? std::max(0.0, 1 - std::abs(state.strokeTime) / 0.22) : 0;
    const double bob = 0.018 * std::sin(time * 2 * pi * 1.9 + (side == Side::far ? 1 : 0)) * (1 - running);
    const double crouch = (isServing ? 0.03 : 0.09) * (1 - state.celebration) - 0.12 * stretch + bob;
    const double lean = 0.08 + 0.10 * running - 0.05 * state.celebration;

    Figure figure;
    const Point3 hips{0, 0, 0.92 - crouch};
    const Point3 chest{heading.x * 0.05 * running, lean, 1.40 - crouch + 0.06 * stretch};
    for (const double leg : {-1.0, 1.0}) {
        const double phase = stridePhase + (leg > 0 ? pi : 0);
        const double lift = std::max(0.0, std::cos(phase)) * 0.2 * running + 0.1 * stretch;
        const Point3 foot = Point3{leg * (0.2 - 0.08 * running), leg * 0.05 * (1 - running), lift} +
                            heading * (0.38 * running * std::sin(phase));
        addLeg(figure, body, outfit, hips + Point3{leg * 0.09, 0, 0}, foot);
    }
    const Point3 shoulders{0.19 * std::cos(swing.turn), -0.19 * std::sin(swing.turn), 0.05 * stretch};
    addTrunk(figure, body, outfit, hips, chest, shoulders);
    const Point3 drop{0, 0, -crouch * 0.6};
    addArm(figure, body, outfit, chest - shoulders, swing.otherHand + drop, -0.8);
    const Point3 hand = addArm(figure, body, outfit, chest + shoulders, swing.hand + drop, 0.8);

    const Point3 direction = normalized(body.direction(swing.racket));
    Point3 across = cross(direction, {0, 1, 0});
    if (length(across) < 0.3)
        across = cross(direction, {0, 0, 1});
    figure.rackets.push_back({hand, direction, normalized(across)});
    return figure;
}

Figure standingFigure(Point3 place, double height, const Outfit& outfit) {
    const Body body{place, -1};
    const double shrink = 1.78 - height;
    Figure figure;
    const Point3 hips{0, 0, 0.92 - shrink * 0.6};
    const Point3 chest{0, 0.03, 1.40 - shrink};
    for (const double side : {-1.0, 1.0}) {
        addLeg(figure, body, outfit, hips + Point3{side * 0.09, 0, 0}, {side * 0.14, 0, 0});
        addArm(figure, body, outfit, chest + Point3{side * 0.19, 0, 0},
               chest + Point3{side * 0.22, 0.1, -0.55}, side);
    }
    addTrunk(figure, body, outfit, hips, chest, {0.19, 0, 0});
    return figure;
}

Figure sittingFigure(Point3 seat, double direction, const Outfit& outfit) {
    Figure figure;
    const Point3 hips = seat + Point3{0, 0, 0.1};
    const Point3 chest = hips + Point3{0.04 * direction, 0, 0.48};
    for (const double side : {-0.1, 0.1}) {
        const Point3 knee = hips + Point3{0.42 * direction, side, 0};
        figure.limbs.push_back({hips + Point3{0, side, 0}, knee, 0.09, 0.07, outfit.shorts});
        figure.limbs.push_back({knee, knee + Point3{0.03 * direction, 0, -0.4}, 0.06, 0.05, outfit.shorts});
        figure.limbs.push_back({chest + Point3{0, side * 2, 0}, knee + Point3{-0.1 * direction, 0, 0.1},
                                0.055, 0.04, outfit.shirt});
    }
    figure.limbs.push_back({hips, chest, 0.15, 0.16, outfit.shirt});
    figure.limbs.push_back({chest + Point3{0, 0, 0.26}, chest + Point3{0, 0, 0.33}, 0.1, 0.1, outfit.skin});
    figure.limbs.push_back(
        {chest + Point3{0, 0, 0.36}, chest + Point3{0.06 * direction, 0, 0.38}, 0.1, 0.09, outfit.hair});
    return figure;
}

Point3 shadowOf(Point3 place) {
    return {place.x + 0.62 * place.z, place.y + 0.28 * place.z, 0};
}

void paintShadow(QPainter& painter, const Camera& camera, const Figure& figure) {
    // One path, so that overlapping pieces do not darken each other.
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    const auto project = [&](Point3 point) { return camera.project(shadowOf(point)); };
    for (const Limb& limb : figure.limbs) {
        const double scale = camera.pixelsPerMetre(limb.from) * 0.8;
        path.addPolygon(
            capsule(project(limb.from), limb.fromRadius * scale, project(limb.to), limb.toRadius * scale));
        path.closeSubpath();
    }
    for (const Racket& racket : figure.rackets) {
        path.addPolygon(racketHead(racket, project));
        path.closeSubpath();
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(6, 14, 30, 105));
    painter.drawPath(path);
}

void paintFigure(QPainter& painter, const Camera& camera, const Figure& figure) {
    std::vector<const Limb*> order;
    for (const Limb& limb : figure.limbs)
        order.push_back(&limb);
    // The nearest face of a piece decides, so that a sleeve lies over the arm in it.
    const auto distance = [&](const Limb* limb) {
        return camera.distance((limb->from + limb->to) * 0.5) - std::max(limb->fromRadius, limb->toRadius);
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](const Limb* a, const Limb* b) { return distance(a) > distance(b); });
    const double trunk = figure.limbs.empty() ? 0 : camera.distance(figure.limbs.front().from);
    const auto paintRackets = [&](bool behind) {
        for (const Racket& racket : figure.rackets) {
            if ((camera.distance(racket.hand) > trunk) == behind)
                paintRacket(painter, camera, racket);
        }
    };
    paintRackets(true);
    for (const Limb* limb : order)
        paintLimb(painter, camera, *limb);
    paintRackets(false);
}

}
