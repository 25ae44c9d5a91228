// template-sheet OUT.png [scale]: draws every template over a court, its name below it.
#include "render/Fonts.h"
#include "render/ScoreboardImage.h"
#include "render/ScoreboardTemplate.h"
#include "render/TemplateRenderer.h"

#include <cstdio>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <QRandomGenerator>

namespace {

using namespace pointloom;

constexpr int columns = 5;
constexpr QSizeF cell(440, 250);

MatchConfig matchFor(TemplateID id) {
    const SportID sport = sportOf(id);
    MatchConfig config;
    config.sport = sport;
    if (id == TemplateID::wimbledon) {
        config.format = MatchFormat::doubles;
        config.team1 = {QStringLiteral("Albaret"), QStringLiteral("Navorro"), QStringLiteral("CZ"),
                        QStringLiteral("CZ")};
        config.team2 = {QStringLiteral("Lind"), QStringLiteral("Moss"), QStringLiteral("US"),
                        QStringLiteral("US")};
    } else if (usesTennisScoring(sport)) {
        config.team1 = {QStringLiteral("Dravnik"), {}, QStringLiteral("ES"), {}};
        config.team2 = {QStringLiteral("Solvane"), {}, QStringLiteral("IT"), {}};
    } else {
        config.team1 = {QStringLiteral("Lyon"), {}, QStringLiteral("FR"), {}};
        config.team2 = {QStringLiteral("Kanagawa"), {}, QStringLiteral("JP"), {}};
    }
    return config;
}

SportScoreState scoreFor(TemplateID id) {
    if (usesTennisScoring(sportOf(id)))
        return ScoreState{{{6, 4, {}}, {6, 7, 5}, {3, 3, {}}}, {GamePoint::advantage, GamePoint::forty}, 1};
    return PointScoreState{{{25, 21, {}}, {19, 25, {}}, {8, 7, {}}}, {14, 9}, 2};
}

/// A round club badge.
QImage makeLogo() {
    QImage logo(256, 256, QImage::Format_ARGB32_Premultiplied);
    logo.fill(Qt::transparent);
    QPainter painter(&logo);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, 14));
    painter.setBrush(QColor(20, 60, 140));
    painter.drawEllipse(QRectF(8, 8, 240, 240));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(225, 240, 90));
    painter.drawEllipse(QRectF(60, 60, 136, 136));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 9));
    painter.drawArc(QRectF(130, 40, 150, 176), 110 * 16, 140 * 16);
    painter.drawArc(QRectF(-24, 40, 150, 176), -70 * 16, 140 * 16);
    return logo;
}

/// Clay, hard court and grass with light, lines and grain, as a camera would see them.
void drawCourt(QPainter& painter, const QRectF& place, int row) {
    const std::array<std::array<QColor, 2>, 3> grounds{{{QColor(196, 104, 62), QColor(150, 70, 40)},
                                                        {QColor(58, 110, 158), QColor(36, 74, 118)},
                                                        {QColor(104, 146, 70), QColor(62, 104, 44)}}};
    const auto& ground = grounds[static_cast<std::size_t>(row) % grounds.size()];
    QLinearGradient light(place.topLeft(), place.bottomRight());
    light.setColorAt(0, ground[0].lighter(118));
    light.setColorAt(1, ground[1]);
    painter.fillRect(place, light);
    painter.setPen(QPen(QColor(255, 255, 255, 170), 3));
    painter.drawLine(place.topLeft() + QPointF(0, 150), place.topRight() + QPointF(0, 96));
    painter.drawLine(place.topLeft() + QPointF(90, 0), place.bottomLeft() + QPointF(190, 0));
    QRandomGenerator grain(7);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 2400; ++i) {
        const QPointF point(place.left() + grain.generateDouble() * place.width(),
                            place.top() + grain.generateDouble() * place.height());
        painter.fillRect(QRectF(point, QSizeF(1.2, 1.2)), QColor(grain.bounded(2) ? 255 : 0, 0, 0, 14));
    }
}

QImage drawSheet(double scale) {
    const auto templates = allCases<TemplateID>();
    const int rows = (static_cast<int>(templates.size()) + columns - 1) / columns;
    const QSizeF size(cell.width() * columns, cell.height() * rows);
    QImage sheet((size * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    sheet.fill(Qt::black);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    const QImage logo = makeLogo();
    for (std::size_t i = 0; i < templates.size(); ++i) {
        const int row = static_cast<int>(i) / columns;
        const QPointF corner(cell.width() * (static_cast<int>(i) % columns), cell.height() * row);
        painter.resetTransform();
        painter.scale(scale, scale);
        drawCourt(painter, {corner, cell}, row);
        drawLeftText(painter, QString::fromUtf8(rawValue(templates[i]).data()), {FontFace::regular, 13},
                     {1, 1, 1, 0.9}, corner + QPointF(20, cell.height() - 16));
        const QImage board =
            renderScoreboardImage(templates[i], scoreFor(templates[i]), matchFor(templates[i]), logo, scale);
        painter.resetTransform();
        painter.drawImage(((corner + QPointF(10, 10)) * scale).toPoint(), board);
    }
    return sheet;
}

}

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    bool isNumber = true;
    const double scale = arguments.size() == 3 ? arguments[2].toDouble(&isNumber) : 1;
    if (arguments.size() < 2 || arguments.size() > 3 || !isNumber || !(scale >= 0.1 && scale <= 8)) {
        std::fputs("usage: template-sheet OUT.png [scale, 0.1 to 8]\n", stderr);
        return 2;
    }
    for (const QString& name : Fonts::missing())
        std::fprintf(stderr, "template-sheet: the font %s is missing\n", qPrintable(name));
    if (!drawSheet(scale).save(arguments[1])) {
        std::fprintf(stderr, "template-sheet: %s: cannot be written\n", qPrintable(arguments[1]));
        return 1;
    }
    return 0;
}
