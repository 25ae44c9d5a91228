#include "sample/FramePainter.h"

#include <algorithm>
#include <numbers>
#include <QPainter>

namespace pointloom::sample {
namespace {

constexpr double pi = std::numbers::pi;

void paintBallShadow(QPainter& painter, const Camera& camera, const std::optional<Point3>& ball) {
    if (!ball)
        return;
    const Point3 place = shadowOf(*ball);
    const double scale = camera.pixelsPerMetre(place);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(6, 14, 30, 130));
    painter.drawEllipse(camera.project(place), 0.085 * scale, 0.045 * scale);
}

}

FramePainter::FramePainter(const Match& match, QSize size, int framesPerSecond, bool cameraNoise)
    : m_match(match)
    , m_framesPerSecond(framesPerSecond)
    , m_cameraNoise(cameraNoise)
    , m_frame(size, QImage::Format_RGB32)
    , m_camera(size)
    , m_margin(size.width() / 36)
    , m_scenery(m_camera, size, m_margin) {}

const QImage& FramePainter::paint(int number) {
    const double time = static_cast<double>(number) / m_framesPerSecond;
    QPainter painter(&m_frame);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    sway(painter, time);
    painter.drawImage(QPointF(-m_margin, -m_margin), m_scenery.view(time, m_match.applause(time)));
    const Figure farPlayer = figure(Side::far, time);
    const Figure nearPlayer = figure(Side::near, time);
    const std::optional<Point3> ball = m_match.ball(time);
    paintShadow(painter, m_camera, farPlayer);
    paintShadow(painter, m_camera, nearPlayer);
    paintBallShadow(painter, m_camera, ball);

    // From the back to the front.
    const double farPlace = m_match.player(Side::far, time).position.y;
    const double nearPlace = m_match.player(Side::near, time).position.y;
    const auto paintBallBetween = [&](double nearer, double farther) {
        if (ball && ball->y >= nearer && ball->y < farther)
            paintBall(painter, time);
    };
    paintBallBetween(farPlace, 1e9);
    paintFigure(painter, m_camera, farPlayer);
    paintBallBetween(0, farPlace);
    m_scenery.paintNet(painter);
    paintBallBetween(nearPlace, 0);
    paintFigure(painter, m_camera, nearPlayer);
    paintBallBetween(-1e9, nearPlace);
    painter.end();
    if (m_cameraNoise)
        addSensorNoise();
    return m_frame;
}

void FramePainter::sway(QPainter& painter, double time) const {
    const double unit = m_frame.width() / 1280.0;
    const double reach = m_cameraNoise ? 3.2 : 1.0;
    const auto wave = [&](double frequency, double phase) {
        return std::sin(2 * pi * frequency * time + phase);
    };
    double x = 3.2 * wave(0.13, 0.4) + 1.3 * wave(0.41, 1.9);
    double y = 2.0 * wave(0.17, 2.2) + 0.8 * wave(0.53, 0.3);
    if (m_cameraNoise) {
        x += 0.35 * wave(2.9, 0.8);
        y += 0.45 * wave(3.7, 1.1);
    }
    const QPointF centre(m_frame.width() / 2.0, m_frame.height() / 2.0);
    painter.translate(centre + QPointF(x, y) * (reach * unit));
    painter.rotate(0.06 * reach * wave(0.11, 1.3));
    const double zoom = 1.006 + 0.004 * wave(0.07, 0);
    painter.scale(zoom, zoom);
    painter.translate(-centre);
}

Figure FramePainter::figure(Side side, double time) {
    const PlayerState state = m_match.player(side, time);
    double& phase = side == Side::near ? m_nearStride : m_farStride;
    constexpr double radiansPerMetre = 3.4;
    phase += length(state.velocity) / m_framesPerSecond * radiansPerMetre;
    const Outfit near{QColor(238, 240, 244), QColor(28, 44, 92), QColor(206, 150, 112),
                      QColor(238, 240, 244)};
    const Outfit far{QColor(214, 62, 56), QColor(24, 26, 32), QColor(224, 172, 134), QColor(40, 28, 22)};
    return playerFigure(side, state, side == Side::near ? near : far, phase, time);
}

// The ball and, behind it, where it has just been.
void FramePainter::paintBall(QPainter& painter, double time) const {
    constexpr int trailSteps = 22;
    constexpr double trailTime = 0.11;   // seconds
    constexpr double drawnRadius = 0.07; // metres; twice the truth, so that it can be followed
    painter.setPen(Qt::NoPen);
    for (int i = trailSteps; i > 0; --i) {
        const double age = static_cast<double>(i) / trailSteps;
        const std::optional<Point3> place = m_match.ball(time - age * trailTime);
        if (!place)
            continue;
        const double radius = drawnRadius * (1 - 0.6 * age) * m_camera.pixelsPerMetre(*place);
        painter.setBrush(QColor(226, 255, 90, static_cast<int>(46 * (1 - age))));
        painter.drawEllipse(m_camera.project(*place), radius, radius);
    }
    if (const std::optional<Point3> place = m_match.ball(time)) {
        const double radius = drawnRadius * m_camera.pixelsPerMetre(*place);
        const QPointF centre = m_camera.project(*place);
        painter.setBrush(QColor(178, 206, 36));
        painter.drawEllipse(centre, radius, radius);
        painter.setBrush(QColor(232, 255, 110));
        painter.drawEllipse(centre - QPointF(0.2, 0.25) * radius, radius * 0.72, radius * 0.72);
    }
}

void FramePainter::addSensorNoise() {
    if (m_noise.empty()) {
        m_noise.resize(1 << 20);
        for (std::int8_t& value : m_noise) {
            // The sum of evenly spread numbers is close to a normal distribution; deviation about 4.
            const auto bits = m_dice();
            const auto sum =
                static_cast<int>((bits & 7) + (bits >> 3 & 7) + (bits >> 6 & 7) + (bits >> 9 & 7));
            value = static_cast<std::int8_t>(sum - 14);
        }
    }
    const auto bytes = static_cast<std::size_t>(m_frame.width()) * 4;
    for (int y = 0; y < m_frame.height(); ++y) {
        const std::int8_t* noise = &m_noise[m_dice() % (m_noise.size() - bytes)];
        uchar* row = m_frame.scanLine(y);
        for (std::size_t i = 0; i < bytes; ++i)
            row[i] = static_cast<uchar>(std::clamp(row[i] + noise[i], 0, 255));
    }
}

}
