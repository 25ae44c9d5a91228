// Every row template as a whole picture, against one drawn here from a table of its own by the recipe: what
// is in each cell, in which font and colour, and the shadow around. Text and shadow have tests of their
// own.
#include "render/Shadow.h"
#include "render/TemplateRenderer.h"
#include "RenderSupport.h"

#include <QLinearGradient>
#include <QPainterPath>

using namespace pointloom;

namespace {

constexpr int scale = 4;
constexpr Rgba white{1, 1, 1};
constexpr Rgba black{0, 0, 0};
constexpr Rgba clear{0, 0, 0, 0};

struct Row {
    Rgba ground;
    Rgba text;
    Rgba accent;
    Rgba gameCell;
    Rgba gameText;
};

struct Board {
    TemplateID id;
    Shadow shadow;
    double radius;
    Rgba panel;
    Row team1;
    Row team2;
    Rgba divider;
    int rowHeight = 38;
    int setWidth = 28;
    int gameWidth = 46;
};

Board points(TemplateID id, Rgba ground1, Rgba accent1, Rgba ground2, Rgba accent2, Rgba cell, Rgba cellText,
             Rgba divider, double shadow = 0.5) {
    return {id,
            {{0, 0, 0, shadow}, 8, {}},
            6,
            ground1,
            {ground1, white, accent1, cell, cellText},
            {ground2, white, accent2, cell, cellText},
            divider};
}

constexpr Rgba blue{0, 0.188, 0.529};
constexpr Rgba red{0.784, 0.063, 0.18};
constexpr Rgba gold{0.722, 0.588, 0.047};
constexpr Rgba clay{0.627, 0.259, 0.102};
constexpr Rgba purple{0.298, 0.153, 0.459};
constexpr Row glassRow{clear, white, {1, 1, 1, 0.08}, {1, 1, 1, 0.15}, white};
constexpr Row gradientRow{clear, {0.91, 0.835, 1}, {1, 1, 1, 0.08}, {0.706, 0.392, 1, 0.6}, white};

// clang-format off
const std::vector<Board> boards{
    {TemplateID::classic, {{0, 0, 0, 0.5}, 8, {}}, 6, {0.118, 0.227, 0.373},
     {{0.118, 0.227, 0.373}, white, {0.086, 0.188, 0.349}, {0.784, 0.294, 0.067}, white},
     {{0.102, 0.2, 0.329}, white, {0.071, 0.157, 0.282}, {0.784, 0.294, 0.067}, white}, {1, 1, 1, 0.15}},
    {TemplateID::dark, {{0, 0, 0, 0.7}, 10, {}}, 4, {0.067, 0.067, 0.067},
     {{0.067, 0.067, 0.067}, white, {0.102, 0.102, 0.102}, {0.722, 0.525, 0.043}, white},
     {{0.039, 0.039, 0.039}, {0.8, 0.8, 0.8}, {0.067, 0.067, 0.067}, {0.722, 0.525, 0.043}, white}, clear},
    {TemplateID::broadcast, {{0, 0, 0, 0.5}, 8, {}}, 0, blue,
     {blue, white, {0, 0.255, 0.627}, white, blue}, {red, white, {0.851, 0.125, 0.208}, white, red}, red, 40, 30, 48},
    {TemplateID::minimal, {{0, 0, 0, 0.4}, 6, {}}, 8, {0, 0, 0, 0.72}, glassRow, glassRow, {1, 1, 1, 0.2}, 36, 26, 42},
    {TemplateID::gradient, {{0.39, 0, 1, 0.4}, 12, {}}, 10, {0.102, 0.063, 0.251}, gradientRow, gradientRow, {1, 1, 1, 0.1}},
    {TemplateID::retro, {{0, 0, 0, 0.5}, 8, {}}, 4, {0.102, 0.227, 0.102},
     {{0.102, 0.227, 0.102}, {0.961, 0.902, 0.255}, {0.086, 0.18, 0.086}, gold, black},
     {{0.082, 0.18, 0.082}, {0.831, 0.784, 0.29}, {0.067, 0.141, 0.067}, gold, black}, gold},
    {TemplateID::rolandgarros, {{0, 0, 0, 0.6}, 10, {}}, 6, {0.11, 0.055, 0.031},
     {{0.11, 0.055, 0.031}, white, {0.165, 0.082, 0.063}, clay, white},
     {{0.086, 0.043, 0.024}, {0.91, 0.788, 0.627}, {0.133, 0.067, 0.047}, clay, white}, {1, 0.784, 0.392, 0.2}},
    {TemplateID::wimbledon, {{0, 0, 0, 0.5}, 8, {}}, 4, {0, 0.259, 0.184},
     {{0, 0.259, 0.184}, white, {0, 0.322, 0.22}, purple, white},
     {{0, 0.22, 0.149}, {0.831, 0.929, 0.855}, {0, 0.271, 0.184}, purple, white}, {1, 1, 1, 0.15}},
    {TemplateID::nightsession, {{0, 0.392, 1, 0.5}, 16, {}}, 10, {0.02, 0.039, 0.118, 0.82},
     {clear, white, {0, 0.588, 1, 0.1}, {0, 0.439, 1}, white},
     {clear, {0.667, 0.831, 1}, {0, 0.588, 1, 0.08}, {0, 0.439, 1}, white}, {0, 0.588, 1, 0.3}},
    points(TemplateID::volleyArena, {0, 0.18, 0.52}, {0, 0.14, 0.44}, {0, 0.14, 0.44}, {0, 0.1, 0.36},
           {0.95, 0.73, 0}, {0, 0, 0}, {1, 1, 1, 0.15}),
    points(TemplateID::volleyCourt, {0.55, 0.35, 0.15}, {0.48, 0.3, 0.12}, {0.46, 0.28, 0.1}, {0.4, 0.24, 0.08},
           {0.2, 0.55, 0.2}, {1, 1, 1}, {1, 1, 1, 0.15}),
    points(TemplateID::volleyNeon, {0.05, 0.05, 0.1, 0.92}, {0.08, 0.08, 0.14, 0.92}, {0.08, 0.08, 0.14, 0.92}, {0.11, 0.11, 0.18, 0.92},
           {0, 0.85, 0.9}, {0, 0, 0}, {0, 0.85, 0.9, 0.4}),
    points(TemplateID::volleyMinimal, {0, 0, 0, 0.65}, {0, 0, 0, 0.55}, {0, 0, 0, 0.65}, {0, 0, 0, 0.55},
           {1, 1, 1, 0.15}, {1, 1, 1}, {1, 1, 1, 0.12}, 0.4),
    points(TemplateID::badmintonSmash, {0.05, 0.1, 0.3}, {0.04, 0.08, 0.25}, {0.04, 0.08, 0.25}, {0.03, 0.06, 0.2},
           {0.8, 0.1, 0.1}, {1, 1, 1}, {1, 1, 1, 0.15}),
    points(TemplateID::badmintonGym, {0.1, 0.3, 0.15}, {0.08, 0.24, 0.12}, {0.08, 0.24, 0.12}, {0.06, 0.18, 0.09},
           {0.9, 0.9, 0.9}, {0, 0, 0}, {1, 1, 1, 0.15}),
    points(TemplateID::badmintonNeon, {0.1, 0, 0.2, 0.92}, {0.14, 0.04, 0.26, 0.92}, {0.14, 0.04, 0.26, 0.92}, {0.18, 0.08, 0.3, 0.92},
           {0.6, 1, 0}, {0, 0, 0}, {0.6, 1, 0, 0.3}),
    points(TemplateID::badmintonMinimal, {0, 0, 0, 0.65}, {0, 0, 0, 0.55}, {0, 0, 0, 0.65}, {0, 0, 0, 0.55},
           {1, 1, 1, 0.15}, {1, 1, 1}, {1, 1, 1, 0.12}),
    points(TemplateID::ttClassic, {0, 0.35, 0.7}, {0, 0.28, 0.6}, {0, 0.28, 0.6}, {0, 0.22, 0.5},
           {1, 1, 1}, {0, 0.35, 0.7}, {1, 1, 1, 0.15}),
    points(TemplateID::ttNeon, {0.05, 0.05, 0.05, 0.92}, {0.1, 0.1, 0.1, 0.92}, {0.1, 0.1, 0.1, 0.92}, {0.15, 0.15, 0.15, 0.92},
           {1, 0.45, 0}, {1, 1, 1}, {1, 0.45, 0, 0.4}),
    points(TemplateID::ttRetro, {0.6, 0.05, 0.05}, {0.7, 0.1, 0.1}, {0.48, 0.03, 0.03}, {0.58, 0.08, 0.08},
           {0.05, 0.05, 0.05}, {1, 1, 1}, {0, 0, 0, 0.3}),
    points(TemplateID::ttMinimal, {0, 0, 0, 0.65}, {0, 0, 0, 0.55}, {0, 0, 0, 0.65}, {0, 0, 0, 0.55},
           {1, 1, 1, 0.15}, {1, 1, 1}, {1, 1, 1, 0.1}),
    points(TemplateID::squashCourt, {0.08, 0.08, 0.08}, {0.12, 0.12, 0.12}, {0.08, 0.08, 0.08}, {0.12, 0.12, 0.12},
           {0.95, 0.8, 0}, {0, 0, 0}, {1, 1, 1, 0.1}),
    points(TemplateID::squashDark, {0.15, 0.15, 0.15}, {0.12, 0.12, 0.12}, {0.11, 0.11, 0.11}, {0.12, 0.12, 0.12},
           {0.83, 0.68, 0.21}, {0, 0, 0}, {1, 1, 1, 0.1}),
    points(TemplateID::squashNeon, {0.06, 0.06, 0.06, 0.92}, {0.1, 0.1, 0.1, 0.92}, {0.1, 0.1, 0.1, 0.92}, {0.1, 0.1, 0.1, 0.92},
           {0.5, 1, 0}, {0, 0, 0}, {0.5, 1, 0, 0.3}),
    points(TemplateID::squashMinimal, {0, 0, 0, 0.65}, {0, 0, 0, 0.55}, {0, 0, 0, 0.65}, {0, 0, 0, 0.55},
           {1, 1, 1, 0.15}, {1, 1, 1}, {1, 1, 1, 0.15}),
    points(TemplateID::pickleballClassic, {0, 0.27, 0.53}, {0, 0.18, 0.38}, {0, 0.22, 0.45}, {0, 0.18, 0.38},
           {0.83, 0.68, 0.21}, {0, 0, 0}, {1, 1, 1, 0.15}),
    points(TemplateID::pickleballNeon, {0.05, 0.05, 0.08, 0.92}, {0.08, 0.08, 0.12, 0.92}, {0.08, 0.08, 0.12, 0.92}, {0.08, 0.08, 0.12, 0.92},
           {0, 0.9, 0.6}, {0, 0, 0}, {1, 1, 1, 0.1}),
    points(TemplateID::pickleballMinimal, {0, 0, 0, 0.65}, {0, 0, 0, 0.55}, {0, 0, 0, 0.65}, {0, 0, 0, 0.55},
           {1, 1, 1, 0.15}, {1, 1, 1}, {1, 1, 1, 0.12}),
    points(TemplateID::pickleballRetro, {0.12, 0.1, 0.08}, {0.15, 0.13, 0.1}, {0.15, 0.13, 0.1}, {0.15, 0.13, 0.1},
           {0.9, 0.4, 0.05}, {1, 1, 1}, {1, 1, 1, 0.12}),
};
// clang-format on

// No two cells of a scoreboard show the same.
const QString name1 = QStringLiteral("I");
const QString name2 = QStringLiteral("W");
const std::vector<SetScore> sets{{6, 1, {}}, {6, 7, 5}, {8, 2, {}}};

struct Game {
    SportScoreState score;
    QString text1;
    QString text2;
};

Game gameFor(TemplateID id) {
    if (usesTennisScoring(sportOf(id)))
        return {ScoreState{sets, {GamePoint::advantage, GamePoint::zero}, 2}, QStringLiteral("Ad"),
                QStringLiteral("0")};
    return {PointScoreState{sets, {13, 9}, 2}, QStringLiteral("13"), QStringLiteral("9")};
}

QPainterPath rounded(const QRectF& rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

void drawPanel(QPainter& painter, const Board& board, const QRectF& rect) {
    const QPainterPath shape = rounded(rect, board.radius);
    drawShadow(painter, shape, board.shadow, board.panel.alpha);
    painter.setRenderHint(QPainter::Antialiasing);
    if (board.id == TemplateID::gradient) {
        QLinearGradient gradient(rect.topLeft(), rect.bottomRight());
        gradient.setColorAt(0, QColor::fromRgbF(0.102F, 0.063F, 0.251F));
        gradient.setColorAt(1, QColor::fromRgbF(0.176F, 0.106F, 0.431F));
        painter.fillPath(shape, gradient);
        return;
    }
    painter.fillPath(shape, board.panel.color());
    if (board.id == TemplateID::nightsession) {
        painter.fillPath(shape, QColor::fromRgbF(1, 1, 1, 0.08F));
        painter.strokePath(shape, QPen(QColor::fromRgbF(0, 0.588F, 1, 0.45F), 1));
    }
}

void drawRow(QPainter& painter, const Board& board, double top, int team, const Row& row,
             const QString& game) {
    constexpr double left = 10;
    constexpr double nameWidth = 120;
    const double height = board.rowHeight;
    const double middle = top + height / 2;
    const double firstSet = left + nameWidth;
    const double gameColumn = firstSet + 3 * board.setWidth;
    const TextFont digits{FontFace::bold, 0.46 * height};
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(QRectF(left, top, nameWidth, height), row.ground.color());
    for (int i = 0; i < 3; ++i)
        painter.fillRect(QRectF(firstSet + i * board.setWidth, top, board.setWidth, height),
                         (i == 1 ? row.ground : row.accent).color());
    painter.fillRect(QRectF(gameColumn, top, board.gameWidth, height), row.gameCell.color());
    painter.setRenderHint(QPainter::Antialiasing);
    if (team == 2) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgbF(0.98F, 0.8F, 0.08F));
        painter.drawEllipse(QPointF(left + 10, middle), 0.14 * height, 0.14 * height);
    }
    for (int i = 0; i < 3; ++i) {
        const SetScore& set = sets[static_cast<std::size_t>(i)];
        drawCenteredText(painter, QString::number(team == 1 ? set.team1 : set.team2), digits, row.text,
                         {firstSet + (i + 0.5) * board.setWidth, middle});
    }
    if (team == 1) {
        const double beside =
            firstSet + 1.5 * board.setWidth + ctTextWidth(QStringLiteral("6"), digits) / 2 + 1;
        drawLeftText(painter, QStringLiteral("(5)"), {FontFace::bold, 0.46 * 0.48 * height}, row.text,
                     {beside, top + 0.26 * height});
    }
    drawCenteredText(painter, game, digits, row.gameText, {gameColumn + board.gameWidth / 2.0, middle});
    drawLeftText(painter, team == 1 ? name1 : name2, {FontFace::regular, 0.38 * height}, row.text,
                 {left + 44, middle});
}

QImage reference(const Board& board, QSize size) {
    QImage image = transparentImage(size.width(), size.height());
    QPainter painter(&image);
    painter.scale(scale, scale);
    const QRectF rect(10, 10, 120 + 3 * board.setWidth + board.gameWidth, 2 * board.rowHeight + 1);
    const Game game = gameFor(board.id);
    drawPanel(painter, board, rect);
    drawRow(painter, board, 10, 1, board.team1, game.text1);
    drawRow(painter, board, 10 + board.rowHeight + 1, 2, board.team2, game.text2);
    painter.fillRect(QRectF(10, 10 + board.rowHeight, rect.width(), 1), board.divider.color());
    if (board.id == TemplateID::retro)
        painter.strokePath(rounded(rect, 4), QPen(gold.color(), 2));
    if (board.id == TemplateID::rolandgarros || board.id == TemplateID::wimbledon)
        painter.fillRect(QRectF(10, 10, 3, rect.height()), board.team1.gameCell.color());
    return image;
}

QRgb premultiplied(const QImage& image, int x, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
}

int difference(QRgb left, QRgb right) {
    return std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                     std::abs(qBlue(left) - qBlue(right)), std::abs(qAlpha(left) - qAlpha(right))});
}

void PrintTo(const Board& board, std::ostream* stream) {
    *stream << rawValue(board.id);
}

class RowTemplatePicture : public testing::TestWithParam<Board> {};

}

TEST_P(RowTemplatePicture, ShowsEachValueInItsCellFontAndColour) {
    const Board& board = GetParam();
    const MatchConfig match = matchBetween(name1, name2);
    const QImage image = renderScoreboardImage(board.id, gameFor(board.id).score, match, {}, scale);
    const QImage expected = reference(board, image.size());
    int wrong = 0;
    QPoint first;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (difference(premultiplied(image, x, y), premultiplied(expected, x, y)) > 2 && wrong++ == 0)
                first = {x, y};
        }
    }
    EXPECT_EQ(wrong, 0) << "first at " << first.x() / scale - 10 << ", " << first.y() / scale - 10
                        << " of the board: " << qPrintable(image.pixelColor(first).name(QColor::HexArgb))
                        << " instead of " << qPrintable(expected.pixelColor(first).name(QColor::HexArgb));
}

INSTANTIATE_TEST_SUITE_P(Templates, RowTemplatePicture, testing::ValuesIn(boards),
                         [](const auto& test) { return std::string(rawValue(test.param.id)); });

TEST(RowTemplatePictures, LeaveNoRowTemplateOut) {
    EXPECT_EQ(boards.size(), allCases<TemplateID>().size() - 1) << "all but the stacked card";
}
