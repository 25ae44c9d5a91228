#include "sample/Scenery.h"

#include "sample/Crowd.h"
#include "sample/Figure.h"

#include <array>
#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QTransform>
#include <random>

namespace pointloom::sample {
namespace {

constexpr int movementSteps = 8; // pictures in one turn of the crowd's movements
constexpr double movementsPerSecond = 11;

constexpr double halfLength = 11.885; // metres, a tennis court for doubles
constexpr double halfWidth = 5.485;
constexpr double singlesHalfWidth = 4.115;
constexpr double serviceLine = 6.40;
constexpr double postDistance = 6.40;
constexpr double postHeight = 1.07;
constexpr double netMiddleHeight = 0.914;

QPolygonF ground(const Camera& camera, double left, double right, double nearY, double farY) {
    return camera.project({{left, nearY, 0}, {right, nearY, 0}, {right, farY, 0}, {left, farY, 0}});
}

void paintGround(QPainter& painter, const Camera& camera) {
    painter.setPen(Qt::NoPen);
    const double top = camera.project({0, farWall, 0}).y();
    const double bottom = camera.project({0, -15, 0}).y();
    QLinearGradient surround(0, top, 0, bottom);
    surround.setColorAt(0, QColor(86, 138, 112));
    surround.setColorAt(1, QColor(52, 104, 82));
    painter.setBrush(surround);
    painter.drawPolygon(ground(camera, -sideWall, sideWall, -17, farWall));
    QLinearGradient court(0, top, 0, bottom);
    court.setColorAt(0, QColor(74, 122, 186));
    court.setColorAt(1, QColor(36, 82, 150));
    painter.setBrush(court);
    painter.drawPolygon(ground(camera, -halfWidth, halfWidth, -halfLength, halfLength));

    // Where rallies are played the surface is worn lighter.
    for (const double end : {-1.0, 1.0}) {
        const QPointF centre = camera.project({0, end * (halfLength + 0.2), 0});
        const double radius = camera.pixelsPerMetre({0, end * halfLength, 0}) * 3.4;
        QRadialGradient worn(QPointF(0, 0), radius);
        worn.setColorAt(0, QColor(225, 235, 245, 42));
        worn.setColorAt(1, QColor(225, 235, 245, 0));
        painter.save();
        painter.translate(centre);
        painter.scale(1, 0.26);
        painter.setBrush(worn);
        painter.drawEllipse(QPointF(0, 0), radius, radius);
        painter.restore();
    }
}

void paintLines(QPainter& painter, const Camera& camera) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(244, 247, 250));
    const auto along = [&](double x, double fromY, double toY) {
        painter.drawPolygon(ground(camera, x - 0.03, x + 0.03, fromY, toY));
    };
    const auto across = [&](double y, double fromX, double toX, double width) {
        painter.drawPolygon(ground(camera, fromX, toX, y - width / 2, y + width / 2));
    };
    for (const double side : {-1.0, 1.0}) {
        along(side * halfWidth, -halfLength, halfLength);
        along(side * singlesHalfWidth, -halfLength, halfLength);
        across(side * halfLength, -halfWidth, halfWidth, 0.12);
        across(side * serviceLine, -singlesHalfWidth, singlesHalfWidth, 0.07);
        along(0, side * halfLength - side * 0.3, side * halfLength);
    }
    along(0, -serviceLine, serviceLine);
}

/// Paints `paint` on a unit rectangle that lies on the quadrilateral `corners`, from its top left clockwise.
void onQuad(QPainter& painter, const QPolygonF& corners, const auto& paint) {
    constexpr double width = 1000;
    constexpr double height = 100;
    QTransform transform;
    const QPolygonF from{QPointF(0, 0), QPointF(width, 0), QPointF(width, height), QPointF(0, height)};
    if (!QTransform::quadToQuad(from, corners, transform))
        return;
    painter.save();
    painter.setTransform(transform, true);
    paint(QRectF(0, 0, width, height));
    painter.restore();
}

void paintBoard(QPainter& painter, const Camera& camera, Point3 from, Point3 to, const QColor& color,
                const QString& text) {
    const Point3 up{0, 0, wallHeight};
    const QPolygonF corners = camera.project({from + up, to + up, to, from});
    painter.setPen(Qt::NoPen);
    QLinearGradient shade(corners[0], corners[3]);
    shade.setColorAt(0, color.lighter(112));
    shade.setColorAt(1, color.darker(125));
    painter.setBrush(shade);
    painter.drawPolygon(corners);
    onQuad(painter, corners, [&](const QRectF& board) {
        QFont font(QStringLiteral("Nimbus Sans"));
        font.setPixelSize(58);
        font.setBold(true);
        font.setLetterSpacing(QFont::PercentageSpacing, 118);
        // Boards are longer than the rectangle they are painted on.
        const double stretch = board.width() / board.height() / (length(to - from) / wallHeight);
        painter.translate(board.center());
        painter.scale(stretch, 1);
        painter.setFont(font);
        painter.setPen(QColor(255, 255, 255, 225));
        painter.drawText(QRectF(-1000, -50, 2000, 100), Qt::AlignCenter, text);
    });
}

void paintWalls(QPainter& painter, const Camera& camera) {
    const QColor navy(20, 44, 84);
    const QColor teal(22, 92, 98);
    const std::array texts{QStringLiteral("CITY OPEN"), QStringLiteral("POINTLOOM"),
                           QStringLiteral("CITY OPEN")};
    const double boardLength = 2 * sideWall / static_cast<double>(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const double left = -sideWall + boardLength * static_cast<double>(i);
        paintBoard(painter, camera, {left, farWall, 0}, {left + boardLength, farWall, 0},
                   i % 2 == 0 ? navy : teal, texts[i]);
    }
    constexpr double sideBoard = 6.5;
    for (double y = farWall; y > -9; y -= sideBoard) {
        paintBoard(painter, camera, {-sideWall, y - sideBoard, 0}, {-sideWall, y, 0}, navy.darker(135),
                   QStringLiteral("POINTLOOM"));
        paintBoard(painter, camera, {sideWall, y, 0}, {sideWall, y - sideBoard, 0}, navy,
                   QStringLiteral("CITY OPEN"));
    }
}

void paintStands(QPainter& painter, const Camera& camera, QRectF all) {
    QLinearGradient concrete(all.topLeft(), all.bottomLeft());
    concrete.setColorAt(0, QColor(52, 58, 70));
    concrete.setColorAt(0.4, QColor(74, 80, 92));
    concrete.setColorAt(1, QColor(60, 66, 78));
    painter.fillRect(all, concrete);
    painter.setPen(Qt::NoPen);
    for (int row = standRows; row >= 0; --row) {
        const double far = farWall + rowDepth * row;
        const double height = wallHeight + rowRise * row;
        const int tone = 50 + 5 * (row % 2) + 3 * row;
        painter.setBrush(QColor(tone, tone + 6, tone + 20));
        painter.drawPolygon(
            camera.project({{-26, far, height}, {26, far, height}, {26, far, 0}, {-26, far, 0}}));
    }
    for (const double side : {-1.0, 1.0}) {
        for (int row = standRows; row >= 0; --row) {
            const double x = side * (sideWall + rowDepth * row);
            const double height = wallHeight + rowRise * row;
            const int tone = (side < 0 ? 34 : 52) + 5 * (row % 2) + 2 * row;
            painter.setBrush(QColor(tone, tone + 6, tone + 18));
            painter.drawPolygon(
                camera.project({{x, farWall, height}, {x, -12, height}, {x, -12, 0}, {x, farWall, 0}}));
        }
    }
}

/// The stand on the left throws a soft shadow across a corner of the court.
void paintStandShadow(QPainter& painter, const Camera& camera) {
    painter.setPen(Qt::NoPen);
    constexpr int layers = 9;
    for (int i = 0; i < layers; ++i) {
        const double soft = 0.14 * i;
        painter.setBrush(QColor(4, 12, 34, 12));
        painter.drawPolygon(camera.project({{-sideWall, -17, 0},
                                            {-5.6 - soft, -17, 0},
                                            {-6.4 - soft, 4, 0},
                                            {-8.0 - soft, farWall, 0},
                                            {-sideWall, farWall, 0}}));
    }
}

void paintStaff(QPainter& painter, const Camera& camera) {
    const Outfit kid{QColor(236, 196, 62), QColor(26, 40, 78), QColor(226, 178, 140), QColor(30, 52, 104)};
    std::vector<Figure> figures;
    for (const double x : {-8.8, 8.8})
        figures.push_back(standingFigure({x, farWall - 0.5, 0}, 1.5, kid));
    figures.push_back(standingFigure({7.0, 0.3, 0}, 1.3, kid));

    // The umpire's chair: a ladder with a seat two metres up.
    Figure chair;
    const QColor metal(228, 232, 236);
    const Point3 seat{-7.5, 0, 1.85};
    for (const double y : {-0.38, 0.38}) {
        chair.limbs.push_back({{-7.95, y, 0}, {-7.62, y * 0.8, 1.9}, 0.04, 0.04, metal});
        chair.limbs.push_back({{-6.95, y, 0}, {-7.28, y * 0.8, 1.9}, 0.04, 0.04, metal});
        chair.limbs.push_back({{-7.72, y * 0.8, 1.85}, {-7.74, y * 0.8, 2.6}, 0.035, 0.035, metal});
    }
    for (const double z : {0.45, 0.9, 1.35})
        chair.limbs.push_back({{-7.02 - z * 0.14, -0.34, z}, {-7.02 - z * 0.14, 0.34, z}, 0.03, 0.03, metal});
    chair.limbs.push_back({{-7.45, -0.3, 1.88}, {-7.45, 0.3, 1.88}, 0.12, 0.12, QColor(26, 70, 110)});
    chair.limbs.push_back({{-7.78, -0.26, 2.3}, {-7.78, 0.26, 2.3}, 0.2, 0.2, QColor(26, 70, 110)});
    const Figure umpire = sittingFigure(
        seat, 1, {QColor(196, 214, 232), QColor(38, 46, 62), QColor(214, 168, 132), QColor(244, 244, 240)});
    chair.limbs.insert(chair.limbs.end(), umpire.limbs.begin(), umpire.limbs.end());
    figures.push_back(chair);

    for (const Figure& figure : figures)
        paintShadow(painter, camera, figure);
    for (const Figure& figure : figures)
        paintFigure(painter, camera, figure);
}

/// Warm light from the upper left, darker corners.
void paintLight(QPainter& painter, QRectF all) {
    QRadialGradient sun(all.topLeft() + QPointF(all.width() * 0.38, all.height() * 0.30), all.width() * 0.75);
    sun.setColorAt(0, QColor(255, 236, 196, 46));
    sun.setColorAt(0.55, QColor(255, 236, 196, 8));
    sun.setColorAt(1, QColor(255, 236, 196, 0));
    painter.fillRect(all, sun);
    QRadialGradient corners(all.center(), all.width() * 0.68);
    corners.setColorAt(0.55, QColor(4, 8, 20, 0));
    corners.setColorAt(1, QColor(4, 8, 20, 95));
    painter.fillRect(all, corners);
}

/// The crowd is farther away than what the camera is focused on.
QImage outOfFocus(const QImage& image) {
    return image.scaled(image.size() * 0.55, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// The surface is not perfectly even.
void grain(QImage& image) {
    std::mt19937 dice(7);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int change = static_cast<int>(dice() % 9) - 4;
            const auto add = [&](int value) { return std::clamp(value + change, 0, 255); };
            row[x] = qRgb(add(qRed(row[x])), add(qGreen(row[x])), add(qBlue(row[x])));
        }
    }
}

}

Scenery::Scenery(const Camera& camera, QSize picture, int margin)
    : m_camera(camera) {
    const QSize size = picture + QSize(2 * margin, 2 * margin);
    const QRectF all(QPointF(-margin, -margin), QSizeF(size));

    QImage behind(size, QImage::Format_RGB32);
    QPainter stands(&behind);
    stands.setRenderHint(QPainter::Antialiasing);
    stands.translate(margin, margin);
    paintStands(stands, camera, all);
    stands.end();

    QImage before(size, QImage::Format_ARGB32_Premultiplied);
    before.fill(Qt::transparent);
    QPainter court(&before);
    court.setRenderHint(QPainter::Antialiasing);
    court.translate(margin, margin);
    paintGround(court, camera);
    paintLines(court, camera);
    paintStandShadow(court, camera);
    paintWalls(court, camera);
    paintStaff(court, camera);
    court.end();

    const Crowd crowd;
    for (const bool clapping : {false, true}) {
        for (int step = 0; step < movementSteps; ++step) {
            QImage view = behind;
            QPainter painter(&view);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.translate(margin, margin);
            crowd.paint(painter, camera, static_cast<double>(step) / movementSteps, clapping);
            painter.fillRect(all, QColor(10, 16, 34, 58)); // the court is what is lit
            painter.end();
            view = outOfFocus(view);
            painter.begin(&view);
            painter.translate(margin, margin);
            painter.drawImage(all.topLeft(), before);
            paintLight(painter, all);
            painter.end();
            grain(view);
            (clapping ? m_clapping : m_sitting).push_back(view);
        }
    }
}

const QImage& Scenery::view(double time, double applause) const {
    const auto step = static_cast<std::size_t>(time * movementsPerSecond);
    return (applause > 0.35 ? m_clapping : m_sitting)[step % movementSteps];
}

void Scenery::paintNet(QPainter& painter) const {
    const auto topAt = [](double x) {
        return netMiddleHeight + (postHeight - netMiddleHeight) * std::abs(x) / postDistance;
    };
    const auto line = [&](Point3 from, Point3 to) {
        painter.drawLine(m_camera.project(from), m_camera.project(to));
    };
    const double scale = m_camera.pixelsPerMetre({0, 0, 0});

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(6, 14, 30, 60));
    painter.drawPolygon(m_camera.project({{-postDistance, 0, 0},
                                          {postDistance, 0, 0},
                                          shadowOf({postDistance, 0, postHeight}),
                                          shadowOf({0, 0, netMiddleHeight}),
                                          shadowOf({-postDistance, 0, postHeight})}));
    painter.setBrush(QColor(14, 20, 28, 88));
    painter.drawPolygon(m_camera.project({{-postDistance, 0, 0},
                                          {postDistance, 0, 0},
                                          {postDistance, 0, postHeight},
                                          {0, 0, netMiddleHeight},
                                          {-postDistance, 0, postHeight}}));
    painter.setPen(QPen(QColor(10, 14, 20, 120), 0.016 * scale));
    constexpr double mesh = 0.16; // wider than in truth, so that it shows
    for (double x = -postDistance + mesh; x < postDistance; x += mesh)
        line({x, 0, 0}, {x, 0, topAt(x)});
    for (double share = 0.15; share < 1; share += 0.16) {
        line({-postDistance, 0, postHeight * share}, {0, 0, netMiddleHeight * share});
        line({0, 0, netMiddleHeight * share}, {postDistance, 0, postHeight * share});
    }
    painter.setPen(QPen(QColor(246, 247, 249), 0.075 * scale, Qt::SolidLine, Qt::FlatCap));
    line({-postDistance, 0, postHeight}, {0, 0, netMiddleHeight});
    line({0, 0, netMiddleHeight}, {postDistance, 0, postHeight});
    painter.setPen(QPen(QColor(236, 238, 242), 0.06 * scale));
    line({0, 0, 0}, {0, 0, netMiddleHeight});
    painter.setPen(QPen(QColor(34, 44, 52), 0.1 * scale, Qt::SolidLine, Qt::RoundCap));
    for (const double side : {-1.0, 1.0})
        line({side * postDistance, 0, 0}, {side * postDistance, 0, postHeight + 0.03});
}

}
