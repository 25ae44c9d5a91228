#include "persistence/Persistence.h"

#include "support/Sessions.h"
#include "json/JsonDocument.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace pointloom {
namespace {

using namespace test;

class Autosave : public testing::Test {
protected:
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("Pointloom.ini"))};
    std::optional<SessionLock> lock = SessionLock::tryAcquire(folder.path());

    QByteArray stored() const { return defaults.data(Persistence::sessionKey).value_or(QByteArray()); }

    QStringList copiesSetAside() const {
        return QDir(folder.path()).entryList({QStringLiteral("unreadable-session-*")}, QDir::Files);
    }

    /// A folder in the way of the temporary file: no save succeeds.
    void block() { ASSERT_TRUE(QDir().mkpath(defaults.path() + QStringLiteral(".new"))); }
    void unblock() { ASSERT_TRUE(QDir().rmdir(defaults.path() + QStringLiteral(".new"))); }

    /// A fresh session as the next start restores it from `text`.
    std::unique_ptr<AppState> restored(const QByteArray& text) {
        defaults.setData(Persistence::sessionKey, text);
        return restored();
    }
    std::unique_ptr<AppState> restored(std::chrono::milliseconds retryInterval = std::chrono::hours(1)) {
        m_persistence = std::make_unique<Persistence>(defaults, *lock, retryInterval);
        auto state = std::make_unique<AppState>(m_persistence.get());
        state->step = Screen::editor;
        m_persistence->load(*state);
        return state;
    }

private:
    std::unique_ptr<Persistence> m_persistence;
};

TEST_F(Autosave, NothingStoredLeavesTheFreshSessionUntouched) {
    const auto state = restored();
    EXPECT_EQ(state->step.value(), Screen::editor);
    EXPECT_TRUE(stored().isEmpty());
}

TEST_F(Autosave, EverythingButVideoScreenAndScaleComesBack) {
    const auto before = restored();
    before->selectedSport = SportID::padel;
    before->selectedTemplate = TemplateID::retro;
    before->matchConfig = tennisMatch();
    before->rules = {"short-sets", "no-ad"};
    before->videoURL = QUrl::fromLocalFile(QStringLiteral("/videos/match.mp4"));
    before->trimStart = 1.5;
    before->trimEnd = 99.25;
    before->scoreboardPosition = QPointF(0.3, -0.25);
    before->scoreboardUserScale = 2;
    before->initialScore = PointScoreState{.sets = {{3, 1, 2}}, .currentGame = {7, 8}, .servingTeam = 2};
    before->cuts = std::vector{CutZone{QUuid::createUuid(), 3, 4}};
    before->language = Language::portuguese;
    before->watermarkURL = QUrl::fromLocalFile(QStringLiteral("/pictures/Élan 100%/#1.png"));
    before->watermarkCorner = WatermarkCorner::topLeft;
    Marker marker = markerAt(65.2);
    marker.label = QStringLiteral("Échange \"long\" \\ \n\x01 🎾");
    before->addMarker(marker, nullptr);
    // Stored by another program, which did not sort them.
    before->markers = std::vector{markerAt(70), marker, markerAt(70)};
    before->save();

    const auto after = restored();
    EXPECT_EQ(after->markers.value().front(), marker);
    before->markers = std::vector{marker, before->markers.value()[0], before->markers.value()[2]};
    EXPECT_EQ(after->step.value(), Screen::sport);
    EXPECT_EQ(after->scoreboardUserScale.value(), 1.0);
    EXPECT_FALSE(after->videoURL.value());
    EXPECT_EQ(after->watermarkURL.value(), before->watermarkURL.value());
    before->scoreboardUserScale = 1;
    EXPECT_EQ(Persistence::Snapshot::of(*after), Persistence::Snapshot::of(*before));
}

TEST_F(Autosave, TheStoredTextNamesItsFieldsInOrderAndLeavesOutWhatIsAbsent) {
    const auto state = restored();
    state->save();
    EXPECT_EQ(stored(), QByteArrayLiteral(R"({"selectedSport":"tennis","markers":[],"cuts":[],)"
                                          R"("scoreboardPositionX":0.15,"scoreboardPositionY":0.1,)"
                                          R"("scoreboardUserScale":1,"trimStart":0,"language":"en",)"
                                          R"("watermarkCorner":"bottomRight"})"));
    state->matchConfig = tennisMatch();
    state->markers = std::vector{markerAt(0.1), markerAt(1e-9), markerAt(1e300)};
    const auto snapshot = Persistence::Snapshot::of(*state);
    EXPECT_EQ(json::parse(json::write(snapshot)), json::Value(json::encode(snapshot)))
        << "both ways of writing say the same";
}

TEST_F(Autosave, PositionsAboveOneAreOldOnesInPoints) {
    const QByteArray pattern(
        R"({"markers":[],"cuts":[],"scoreboardPositionX":X,"scoreboardPositionY":Y,"trimStart":0})");
    const auto positionOf = [&](const char* x, const char* y) {
        return restored(
                   QByteArray(pattern).replace("X,", QByteArray(x) + ',').replace("Y,", QByteArray(y) + ','))
            ->scoreboardPosition.value();
    };
    EXPECT_EQ(positionOf("0.5", "1.2"), QPointF(0.15, 0.1));
    EXPECT_EQ(positionOf("1.0", "1.0"), QPointF(1, 1));
    EXPECT_EQ(positionOf("-3", "0.5"), QPointF(-3, 0.5));
}

TEST_F(Autosave, ASessionThatNamesNoSportIsTennis) {
    const QByteArray stored(
        R"({"markers":[],"cuts":[],"scoreboardPositionX":0.5,"scoreboardPositionY":0.5,"trimStart":0})");
    EXPECT_EQ(restored(stored)->selectedSport.value(), SportID::tennis);
}

TEST_F(Autosave, ALegacySessionIsRestoredAsTennisAndRewrittenAtOnce) {
    const QByteArray legacy(
        R"({"selectedTemplate":"wimbledon","markers":[{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF",)"
        R"("startTime":4.5,"score":{"sets":[{"team1":6,"team2":7,"tiebreak":3}],)"
        R"("currentGame":{"team1":"deuce","team2":"zero"},"servingTeam":2},"label":"old"}],)"
        R"("cuts":[{"id":"00000000-0000-0000-0000-000000000001","start":1,"end":2}],)"
        R"("initialScore":{"sets":[],"currentGame":{"team1":"zero","team2":"zero"},"servingTeam":1},)"
        R"("scoreboardPositionX":120,"scoreboardPositionY":0.5,"trimStart":2,"language":"de"})");
    const auto state = restored(legacy);
    EXPECT_EQ(state->selectedSport.value(), SportID::tennis);
    EXPECT_EQ(state->selectedTemplate.value(), TemplateID::wimbledon);
    EXPECT_EQ(state->language.value(), Language::german);
    EXPECT_EQ(state->scoreboardPosition.value(), QPointF(0.15, 0.1));
    EXPECT_EQ(state->cuts.value().size(), 1U);
    EXPECT_TRUE(state->initialScore.value());
    ASSERT_EQ(state->markers.value().size(), 1U);
    const Marker& marker = state->markers.value().front();
    EXPECT_EQ(marker.label, QStringLiteral("old"));
    EXPECT_EQ(std::get<ScoreState>(marker.score).sets, (std::vector<SetScore>{{6, 7, 3}}));

    EXPECT_TRUE(stored().startsWith(R"({"selectedSport":"tennis")")) << stored().toStdString();
    EXPECT_EQ(Persistence::Snapshot::of(*restored()), Persistence::Snapshot::of(*state));
    EXPECT_TRUE(copiesSetAside().isEmpty());
}

TEST_F(Autosave, AValueThatFitsNoRecordStaysAndIsSetAsideOnceBeforeItIsReplaced) {
    const QByteArray newer(R"({"selectedTemplate":"hologram","markers":[],"cuts":[],"scoreboardPositionX":0,)"
                           R"("scoreboardPositionY":0,"trimStart":0})");
    const auto state = restored(newer);
    EXPECT_EQ(state->step.value(), Screen::editor) << "nothing was restored";
    EXPECT_EQ(stored(), newer);
    EXPECT_TRUE(copiesSetAside().isEmpty());

    state->addMarker(markerAt(1), nullptr);
    state->addMarker(markerAt(2), nullptr);
    EXPECT_NE(stored(), newer);
    ASSERT_EQ(copiesSetAside().size(), 1);
    QFile copy(folder.filePath(copiesSetAside().first()));
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll(), newer);

    restored("not JSON at all")->reset();
    EXPECT_EQ(copiesSetAside().size(), 2) << "another such value is kept too, even from a reset";
    EXPECT_FALSE(defaults.data(Persistence::sessionKey));
    restored(newer)->save();
    EXPECT_EQ(copiesSetAside().size(), 2);
}

TEST_F(Autosave, ANewSportThatReadsAsAnOldSessionIsSetAsideToo) {
    const auto state =
        restored(R"({"selectedSport":"curling","markers":[],"cuts":[],"scoreboardPositionX":0,)"
                 R"("scoreboardPositionY":0,"trimStart":7})");
    EXPECT_EQ(state->trimStart.value(), 7);
    EXPECT_EQ(copiesSetAside().size(), 1);
}

TEST_F(Autosave, WhatCannotBeWrittenAsJsonLeavesTheValueBefore) {
    const auto state = restored();
    state->addMarker(markerAt(1), nullptr);
    const QByteArray before = stored();
    state->trimStart = std::numeric_limits<double>::quiet_NaN();
    state->save();
    EXPECT_EQ(stored(), before);
}

TEST_F(Autosave, AFailedSaveIsSilentAndTheNextOneCatchesUp) {
    const auto state = restored();
    state->addMarker(markerAt(1), nullptr);
    const QByteArray before = stored();
    block();
    state->addMarker(markerAt(2), nullptr);
    EXPECT_EQ(stored(), before);
    unblock();
    state->addMarker(markerAt(3), nullptr);
    EXPECT_EQ(timesOf(*restored()), (std::vector<double>{1, 2, 3}));
}

TEST_F(Autosave, AFailedSaveIsTriedAgainByItselfUntilTheDiskTakesIt) {
    const auto state = restored(std::chrono::milliseconds(1));
    block();
    state->addMarker(markerAt(1), nullptr);
    state->addMarker(markerAt(2), nullptr);
    QTest::qWait(20);
    EXPECT_TRUE(stored().isEmpty());
    unblock();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !stored().isEmpty(); }, 10'000));
    EXPECT_EQ(timesOf(*restored()), (std::vector<double>{1, 2}));
}

TEST_F(Autosave, WhatFailedIsTriedAgainAtTheEnd) {
    auto state = restored();
    block();
    state->addMarker(markerAt(1), nullptr);
    unblock();
    state->retrySave();
    EXPECT_EQ(timesOf(*restored()), std::vector<double>{1});

    state = restored();
    block();
    state->reset();
    unblock();
    EXPECT_FALSE(stored().isEmpty());
    state->retrySave();
    EXPECT_TRUE(stored().isEmpty()) << "a session that was thrown away does not come back";
    state->retrySave();
    EXPECT_TRUE(stored().isEmpty()) << "nothing is written that was not asked for";
}

TEST_F(Autosave, ASessionThatWouldBeRefusedLeavesTheValueBefore) {
    const auto state = restored();
    state->addMarker(markerAt(1), nullptr);
    const QByteArray before = stored();
    Marker endless = markerAt(2);
    endless.label = QString(64 * 1024 * 1024, u'l');
    state->addMarker(endless, nullptr);
    EXPECT_EQ(stored(), before);
    state->removeMarker(endless.id, nullptr);
    state->addMarker(markerAt(3), nullptr);
    EXPECT_EQ(timesOf(*restored()), (std::vector<double>{1, 3}));
}

}
}
