#include "playback/NumberedClip.h"
#include "playback/Watched.h"

#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLabel>
#include <QVBoxLayout>

namespace pointloom::playback {

namespace {

class PlayerViewTest : public testing::Test {
protected:
    // A clip stored as 320x64 that is to be turned, counterclockwise, to be upright.
    QString makeRotatedClip(int degrees) const {
        const std::map<int, test::Turn> turns = {{0, test::upright},
                                                 {90, test::counterclockwise},
                                                 {180, test::upsideDown},
                                                 {270, test::clockwise}};
        const QString stored = makeNumberedClip(folder, QStringLiteral("stored.mp4"));
        return test::makeTurned(turns.at(degrees), folder, stored,
                                QStringLiteral("rotated%1.mp4").arg(degrees));
    }

    test::ClipFolder folder;
};

// The picture turned back to how it is stored.
QImage turned(const QImage& picture, int degrees) {
    return picture.transformed(QTransform().rotate(degrees));
}

}

TEST_F(PlayerViewTest, ThePictureKeepsItsShapeAndOverlaysAreToldWhereItIs) {
    Watched watched(PlayerView::Rendering::software, {400, 300});
    std::vector<QRectF> places;
    QObject::connect(&watched.view, &PlayerView::videoRectChanged, &watched.view,
                     [&](const QRectF& r) { places.push_back(r); });
    EXPECT_EQ(watched.view.videoRect(), QRectF(0, 0, 400, 300));
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    EXPECT_EQ(watched.view.videoRect(), QRectF(0, 110, 400, 80));
    watched.view.resize(640, 64);
    EXPECT_TRUE(Watched::waitFor([&] { return watched.view.videoRect() == QRectF(160, 0, 320, 64); }));
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.back(), watched.view.videoRect());
    EXPECT_EQ(watched.frameNumber(), 0);
    ASSERT_TRUE(watched.seek(37 / 25.0));
    EXPECT_TRUE(watched.showsFrame(37));
}

TEST_F(PlayerViewTest, PicturesOfPhonesStandUpright) {
    Watched watched(PlayerView::Rendering::software, {200, 320});
    for (const int degrees : {90, 180, 270}) {
        SCOPED_TRACE(degrees);
        ASSERT_TRUE(watched.load(makeRotatedClip(degrees)));
        const bool upright = degrees != 180;
        EXPECT_EQ(watched.player.size(), upright ? QSize(64, 320) : QSize(320, 64));
        EXPECT_EQ(watched.view.videoRect(), upright ? QRectF(68, 0, 64, 320) : QRectF(0, 140, 200, 40));
        ASSERT_TRUE(watched.seek(19 / 25.0));
        EXPECT_TRUE(
            Watched::waitFor([&] { return frameNumberIn(turned(watched.picture(), degrees)) == 19; }, 2000));
    }
}

TEST_F(PlayerViewTest, PixelsThatAreNotSquareAreStretched) {
    Watched watched;
    ASSERT_TRUE(watched.load(
        makeNumberedClip(folder, QStringLiteral("clip.mp4"),
                         {.frames = 5, .more = {QStringLiteral("-vf"), QStringLiteral("setsar=2/1")}})));
    EXPECT_EQ(watched.player.size(), QSize(640, 64));
    EXPECT_EQ(watched.view.videoRect(), QRectF(0, 16, 320, 32));
}

TEST_F(PlayerViewTest, ChildrenLieOverThePicture) {
    Watched watched;
    QLabel overlay(&watched.view);
    overlay.setGeometry(100, 10, 50, 40);
    overlay.setAutoFillBackground(true);
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::red);
    overlay.setPalette(palette);
    overlay.show();
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    ASSERT_TRUE(watched.seek(1));
    EXPECT_EQ(watched.picture().pixelColor(120, 30), QColor(Qt::red));
}

TEST_F(PlayerViewTest, AHiddenViewDoesNotHoldThePlayerUp) {
    Watched watched;
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    watched.view.hide();
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(watched.seek(i / 25.0));
    EXPECT_LT(timer.elapsed(), 4000);
    watched.view.show();
    EXPECT_TRUE(watched.showsFrame(9));
}

TEST_F(PlayerViewTest, EitherOfPlayerAndViewMayGoFirst) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"));
    for (const bool playerFirst : {true, false}) {
        auto player = std::make_unique<Player>(Sound::none);
        auto view = std::make_unique<PlayerView>(*player, PlayerView::Rendering::software);
        view->show();
        player->load(clip);
        ASSERT_TRUE(Watched::waitFor([&] { return player->isLoaded(); }));
        player->play();
        Watched::settle();
        if (playerFirst)
            player.reset();
        else
            view.reset();
        Watched::settle();
        if (view)
            view->grab();
    }
}

// Runs on a screen only: see CMakeLists.txt.
class OpenGlSmokeTest : public PlayerViewTest {
protected:
    void SetUp() override {
        if (QGuiApplication::platformName() == QLatin1String("offscreen"))
            GTEST_SKIP() << "needs a screen";
    }
};

TEST_F(OpenGlSmokeTest, TheGraphicsCardsPictureIsTheSame) {
    Watched watched(PlayerView::Rendering::openGl, {320, 64});
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    EXPECT_EQ(watched.view.rendering(), PlayerView::Rendering::openGl);
    for (const int number : {0, 42, 7}) {
        ASSERT_TRUE(watched.seek(number / 25.0));
        EXPECT_TRUE(watched.showsFrame(number)) << watched.frameNumber();
    }
    watched.view.resize(200, 320);
    ASSERT_TRUE(watched.load(makeRotatedClip(90)));
    EXPECT_EQ(watched.player.size(), QSize(64, 320));
    ASSERT_TRUE(watched.seek(19 / 25.0));
    EXPECT_TRUE(Watched::waitFor([&] { return frameNumberIn(turned(watched.picture(), 90)) == 19; }));
}

TEST_F(OpenGlSmokeTest, AViewThatMovesToAnotherWindowGoesOn) {
    QWidget first;
    QWidget second;
    for (QWidget* window : {&first, &second}) {
        new QVBoxLayout(window);
        window->resize(360, 100);
        window->show();
    }
    Player player(Sound::none);
    auto* view = new PlayerView(player, PlayerView::Rendering::openGl);
    first.layout()->addWidget(view);
    player.load(makeNumberedClip(folder, QStringLiteral("clip.mp4")));
    ASSERT_TRUE(Watched::waitFor([&] { return player.isLoaded(); }));
    player.seek(1);
    ASSERT_TRUE(Watched::waitFor([&] { return !player.isSeeking(); }));
    second.layout()->addWidget(view);
    const auto shown = [&] {
        const QImage whole = view->grab().toImage();
        return frameNumberIn(whole.copy(view->videoRect().toRect()));
    };
    EXPECT_TRUE(Watched::waitFor([&] { return !player.isSeeking() && shown() == 25; })) << shown();
}

TEST_F(OpenGlSmokeTest, AViewThatCanBeDrawnInNoWaySaysSo) {
    Player player(Sound::none);
    const PlayerView only(player, PlayerView::Rendering::software); // a player has one at most
    PlayerView other(player, PlayerView::Rendering::openGl);
    QString reason;
    QObject::connect(&other, &PlayerView::unavailable, [&](const QString& given) { reason = given; });
    other.show();
    EXPECT_TRUE(Watched::waitFor([&] { return !reason.isEmpty(); }));
    EXPECT_TRUE(reason.startsWith(QStringLiteral("The picture cannot be drawn: "))) << reason.toStdString();
    other.resize(other.size() * 2);
    other.grab();
}

TEST_F(OpenGlSmokeTest, WithoutAGraphicsCardThePictureIsDrawnInSoftware) {
    Player player(Sound::none);
    const PlayerView view(player);
    EXPECT_EQ(view.rendering(), PlayerView::Rendering::software);
}

TEST(PictureFit, PictureKeepsItsShapeInTheMiddle) {
    EXPECT_EQ(fitPicture({1920, 1080}, {0, 0, 960, 740}), QRect(0, 100, 960, 540));
    EXPECT_EQ(fitPicture({1080, 1920}, {0, 0, 960, 540}), QRect(328, 0, 304, 540));
    EXPECT_EQ(fitPicture({4, 4}, {10, 20, 100, 50}), QRect(35, 20, 50, 50));
}

TEST(PictureFit, ExtremeShapesStayVisible) {
    EXPECT_EQ(fitPicture({10000, 1}, {0, 0, 100, 100}).size(), QSize(100, 1));
    EXPECT_EQ(fitPicture({}, {0, 0, 100, 50}), QRect(0, 0, 100, 50));
    EXPECT_EQ(fitPicture({16, 9}, {0, 0, 0, 50}), QRect(0, 0, 0, 50));
}

}
