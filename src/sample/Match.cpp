#include "sample/Match.h"

#include "sample/TennisScore.h"

#include <algorithm>
#include <array>
#include <span>

namespace pointloom::sample {
namespace {

constexpr double gravity = 9.81;           // m/s^2
constexpr double ballRadius = 0.033;       // m
constexpr double baseline = 11.885;        // m from the net
constexpr double timeBetweenPoints = 1.75; // seconds from a point's end to the next serve
constexpr double tossTime = 0.75;          // seconds from the hand to the racket

/// Places as the server sees them from the deuce court: x to the server's right, y from the net toward the
/// receiver. The other court mirrors x.
struct ShotPlan {
    double contactX, contactY, contactHeight;
    double bounceX, bounceY;
    double flight;      // seconds from contact to bounce
    double afterBounce; // seconds from bounce to the next contact, or to the end of the point
};

constexpr std::array longRally{
    ShotPlan{0.6, -11.7, 2.72, -2.9, 5.4, 0.45, 0.40},
    ShotPlan{-3.9, 12.2, 0.98, -2.0, -8.4, 0.82, 0.43},
    ShotPlan{-2.8, -11.8, 0.98, 3.5, 9.0, 0.80, 0.35},
};
constexpr std::array returnWinner{
    ShotPlan{0.6, -11.7, 2.72, -3.5, 4.9, 0.46, 0.40},
    ShotPlan{-4.6, 12.0, 0.98, 3.3, -9.6, 0.76, 0.36},
};
constexpr std::array ace{
    ShotPlan{0.6, -11.7, 2.72, -0.35, 5.9, 0.43, 0.37},
};
constexpr std::array crossCourt{
    ShotPlan{0.6, -11.7, 2.72, -1.0, 5.8, 0.44, 0.41},
    ShotPlan{-1.6, 12.4, 0.98, 2.2, -8.8, 0.82, 0.43},
    ShotPlan{3.0, -11.9, 0.98, 3.7, 7.4, 0.78, 0.37},
};
constexpr std::array bodyReturn{
    ShotPlan{0.6, -11.7, 2.72, -0.9, 5.6, 0.46, 0.42},
    ShotPlan{-1.5, 12.5, 0.98, -3.4, -9.4, 0.80, 0.36},
};
constexpr std::array<std::span<const ShotPlan>, 5> plans{longRally, returnWinner, ace, crossCourt,
                                                         bodyReturn};

/// A throw from `from` to `to` that takes `duration`, after `elapsed` seconds.
Point3 ballistic(Point3 from, Point3 to, double duration, double elapsed) {
    const double share = elapsed / duration;
    const double rise = (to.z - from.z) / duration + gravity * duration / 2;
    Point3 place = mix(from, to, share);
    place.z = from.z + rise * elapsed - gravity * elapsed * elapsed / 2;
    return place;
}

/// The feet of a player who hits a ball there.
Point3 stance(const Stroke& stroke) {
    const double forward = facing(stroke.side);
    double reach = 0.27;
    double ahead = 0.2;
    if (stroke.kind != Stroke::Kind::serve) {
        reach = stroke.kind == Stroke::Kind::forehand ? 0.9 : -0.9;
        ahead = 0.38;
    }
    return {stroke.contact.x - forward * reach, stroke.contact.y - forward * ahead, 0};
}

/// After the last bounce the ball hops on, slower each time, as far as the wall.
Point3 runningOut(const Stroke& stroke, double elapsed) {
    const double flight = stroke.bounceTime - stroke.time;
    Point3 place = stroke.bounce + (stroke.bounce - stroke.contact) * (0.72 * elapsed / flight);
    constexpr double wall = 17.9;
    place.y = std::clamp(place.y, -wall, wall);
    double hop = 0.62; // seconds in the air
    while (elapsed > hop && hop > 0.05) {
        elapsed -= hop;
        hop *= 0.72;
    }
    place.z = ballRadius + std::max(0.0, gravity * elapsed * (hop - elapsed) / 2);
    return place;
}

}

Match::Match(double seconds) {
    TennisScore score;
    double end = -0.4; // so that the first serve comes soon
    for (std::size_t number = 0; end < seconds; ++number) {
        const Side server = score.server() == 0 ? Side::near : Side::far;
        addRally(number, server, score.servesFromDeuceCourt(), end + timeBetweenPoints);
        planSteps(m_rallies.back());
        score.pointTo(m_rallies.back().winner == Side::near ? 0 : 1);
        end = m_rallies.back().end;
    }
}

void Match::addRally(std::size_t number, Side server, bool deuceCourt, double serveTime) {
    const double mirror = deuceCourt ? 1 : -1;
    const double direction = facing(server);
    Rally rally;
    double time = serveTime;
    Side hitter = server;
    for (const ShotPlan& plan : plans[number % plans.size()]) {
        Stroke stroke;
        stroke.side = hitter;
        stroke.time = time;
        stroke.contact = {plan.contactX * mirror * direction, plan.contactY * direction, plan.contactHeight};
        stroke.bounceTime = time + plan.flight;
        stroke.bounce = {plan.bounceX * mirror * direction, plan.bounceY * direction, ballRadius};
        if (!rally.strokes.empty()) {
            const bool onTheRight = stroke.contact.x * facing(hitter) > -0.5;
            stroke.kind = onTheRight ? Stroke::Kind::forehand : Stroke::Kind::backhand;
        }
        rally.strokes.push_back(stroke);
        rally.winner = hitter;
        time = stroke.bounceTime + plan.afterBounce;
        hitter = otherSide(hitter);
    }
    rally.end = time;
    m_rallies.push_back(std::move(rally));
}

void Match::planSteps(const Rally& rally) {
    const Stroke& serve = rally.strokes.front();
    const Stroke& last = rally.strokes.back();
    const double receiverX = rally.strokes.front().bounce.x > 0 ? 3.1 : -3.1;

    const Point3 behindTheLine{0, -0.35 * facing(serve.side), 0};
    steps(serve.side).push_back({serve.time - 0.85, stance(serve) + behindTheLine});
    const Side receiver = otherSide(serve.side);
    const Point3 waiting{receiverX, -facing(receiver) * (baseline + 0.9), 0};
    steps(receiver).push_back({serve.time - 0.85, waiting});
    steps(receiver).push_back({serve.time + 0.1, waiting + Point3{0, 0.3 * facing(receiver), 0}});

    for (const Stroke& stroke : rally.strokes) {
        const Point3 home{stance(stroke).x * 0.25, -facing(stroke.side) * (baseline + 0.4), 0};
        steps(stroke.side).push_back({stroke.time, stance(stroke)});
        steps(stroke.side)
            .push_back({stroke.time + 0.15, stance(stroke) + Point3{0, 0.15 * facing(stroke.side), 0}});
        steps(stroke.side).push_back({stroke.time + 0.95, home});
    }

    // The loser runs for the ball and comes too late.
    const Side loser = otherSide(rally.winner);
    std::vector<Step>& chase = steps(loser);
    while (chase.back().time > last.time + 0.2)
        chase.pop_back();
    const Point3 from = position(loser, last.time + 0.2);
    const Point3 missed = runningOut(last, rally.end - last.bounceTime);
    chase.push_back({last.time + 0.2, from});
    chase.push_back({rally.end, mix(from, {missed.x, from.y, 0}, 0.6)});
    steps(rally.winner)
        .push_back({std::max(rally.end + 0.15, steps(rally.winner).back().time + 0.05),
                    steps(rally.winner).back().position});
}

Point3 Match::position(Side side, double time) const {
    const std::vector<Step>& list = steps(side);
    const auto next =
        std::find_if(list.begin(), list.end(), [&](const Step& step) { return step.time > time; });
    if (next == list.begin())
        return list.front().position;
    if (next == list.end())
        return list.back().position;
    const Step& before = *std::prev(next);
    return mix(before.position, next->position,
               smoothStep((time - before.time) / (next->time - before.time)));
}

PlayerState Match::player(Side side, double time) const {
    PlayerState state;
    state.position = position(side, time);
    constexpr double step = 1.0 / 60;
    state.velocity = (position(side, time + step) - position(side, time - step)) * (0.5 / step);
    for (const Rally& rally : m_rallies) {
        for (const Stroke& stroke : rally.strokes) {
            const bool nearer = !state.stroke || std::abs(time - stroke.time) < std::abs(state.strokeTime);
            if (stroke.side == side && nearer) {
                state.stroke = &stroke;
                state.strokeTime = time - stroke.time;
            }
        }
        const double since = time - rally.end;
        if (rally.winner == side && since > -0.1 && since < 0.9)
            state.celebration = smoothStep((since + 0.1) / 0.25) * (1 - smoothStep((since - 0.55) / 0.3));
    }
    return state;
}

std::optional<Point3> Match::ball(double time) const {
    for (const Rally& rally : m_rallies) {
        const Stroke& serve = rally.strokes.front();
        if (time < serve.time - tossTime || time > rally.end + 0.7)
            continue;
        if (time < serve.time) {
            const Point3 hand = serve.contact + Point3{-0.3 * facing(serve.side), 0, 1.3 - serve.contact.z};
            return ballistic(hand, serve.contact, tossTime, time - serve.time + tossTime);
        }
        for (auto stroke = rally.strokes.begin(); stroke != rally.strokes.end(); ++stroke) {
            const auto next = std::next(stroke);
            if (time < stroke->bounceTime)
                return ballistic(stroke->contact, stroke->bounce, stroke->bounceTime - stroke->time,
                                 time - stroke->time);
            if (next == rally.strokes.end())
                return runningOut(*stroke, time - stroke->bounceTime);
            if (time < next->time)
                return ballistic(stroke->bounce, next->contact, next->time - stroke->bounceTime,
                                 time - stroke->bounceTime);
        }
    }
    return std::nullopt;
}

double Match::applause(double time) const {
    double loudest = 0;
    for (const Rally& rally : m_rallies) {
        const double since = time - rally.end;
        loudest = std::max(loudest, smoothStep((since + 0.1) / 0.3) * (1 - smoothStep((since - 0.5) / 0.7)));
    }
    return loudest;
}

QByteArray Match::markersCsv(double seconds) const {
    QByteArray csv = "startTime,label,servingTeam,game_team1,game_team2,"
                     "set1_t1,set1_t2,set2_t1,set2_t2,set3_t1,set3_t2\n";
    TennisScore score;
    csv += "0,Start," + score.csvFields() + '\n';
    for (const Rally& rally : m_rallies) {
        if (rally.end >= seconds || score.isOver())
            break;
        const bool isAce = rally.strokes.size() == 1;
        score.pointTo(rally.winner == Side::near ? 0 : 1);
        csv +=
            QByteArray::number(rally.end, 'f', 2) + (isAce ? ",Ace," : ",Winner,") + score.csvFields() + '\n';
    }
    return csv;
}

}
