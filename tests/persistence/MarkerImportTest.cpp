#include "persistence/MarkerImport.h"

#include "DocumentSupport.h"
#include "l10n/L10nKey.h"
#include "session/UndoStack.h"
#include "support/Sessions.h"

#include <QTemporaryDir>

namespace pointloom {
namespace {

using namespace test;

class MarkerImport : public testing::Test {
protected:
    QTemporaryDir folder;
    RecordingStore store;
    AppState state{&store};
    UndoStack undo;

    ImportOutcome import(const char* name, const QByteArray& bytes) {
        const QString path = folder.filePath(QString::fromUtf8(name));
        writeFile(path, bytes);
        return importMarkers(path, state, &undo);
    }
};

TEST_F(MarkerImport, ReplacesTheMarkersSelectsTheFirstAndSaves) {
    state.addMarker(markerAt(500), nullptr);
    const ImportOutcome outcome =
        import("match.csv", "\xEF\xBB\xBFstartTime,label\r\n30,Break,2,0,0,2,1\r\n15,,1,adv,40,1,1\r\n");
    EXPECT_EQ(outcome.message, QString()) << "there is nothing to say";
    EXPECT_EQ(timesOf(state), (std::vector<double>{15, 30}));
    EXPECT_EQ(state.selectedMarkerID.value(), state.markers.value().front().id);
    EXPECT_EQ(store.saves, 2);
    undo.undo();
    EXPECT_EQ(timesOf(state), std::vector<double>{500});
}

TEST_F(MarkerImport, AFailureSaysWhyInTheSessionsLanguage) {
    state.addMarker(markerAt(500), nullptr);
    state.language = Language::french;
    EXPECT_EQ(import("empty.csv", "startTime,label\n").message, state.t(L10nKey::noValidMarkersInCSV));
    EXPECT_EQ(
        import("bad.csv", "1,a\n2,b\n").details,
        QStringList{QStringLiteral("Ignor\u00e9e, ligne 1, 2 : ni 1 ni 2 dans le deuxi\u00e8me champ")});
    EXPECT_EQ(import("match.dvw", "[3DATAVOLLEYSCOUT]\n").message,
              QStringLiteral(
                  "Impossible de lire le fichier : match.dvw: ses scores sont ceux d\u2019un autre sport "
                  "que ce match"));
    EXPECT_EQ(importMarkers(folder.filePath(QStringLiteral("absent.csv")), state, nullptr).message,
              QStringLiteral("Impossible de lire le fichier : absent.csv: no such file"));
    EXPECT_EQ(timesOf(state), std::vector<double>{500});
    EXPECT_EQ(store.saves, 1);
}

TEST_F(MarkerImport, WhatWasLeftOutOrLiesBehindTheVideoIsSaid) {
    state.videoDuration = 20;
    const ImportOutcome outcome =
        import("match.csv", "31,,1,0,0,0,0\n0:03,,1,0,0,0,0\n20,,1,15,0,0,0\n21,,1,15,0,0,0\n");
    EXPECT_EQ(outcome.message, QStringLiteral("Markers imported: 3"));
    EXPECT_EQ(outcome.details, QStringList{QStringLiteral("Left out, line 2: no time that can be read")});
    EXPECT_EQ(outcome.afterEnd, QStringLiteral("After the end of the video, line 1, 4"));
    EXPECT_TRUE(outcome.firstPoint.isNull()) << "a table's times are those of this video";
}

TEST_F(MarkerImport, AListOfPointsStartsFromTheInitialScoreAndMovesToThePlayhead) {
    state.matchConfig = tennisMatch();
    state.initialScore = ScoreState{{{5, 2, {}}, {}, {}}, {GamePoint::thirty, GamePoint::zero}, 2};
    const ImportOutcome outcome = import("points.txt", "100,1\n131.5,1\n");
    EXPECT_EQ(outcome.firstPoint, state.markers.value().front().id);
    EXPECT_EQ(setsOf(state.markers.value().back().score).front(), (SetScore{6, 2, {}}));
    shiftMarkers(outcome.firstPoint, 12.25, state, &undo);
    EXPECT_EQ(timesOf(state), (std::vector<double>{12.25, 43.75}));
    undo.undo();
    EXPECT_EQ(timesOf(state), (std::vector<double>{100, 131.5}));
    undo.undo();
    EXPECT_TRUE(state.markers.value().empty());
    shiftMarkers(outcome.firstPoint, 3, state, &undo);
    EXPECT_TRUE(state.markers.value().empty());
}

TEST_F(MarkerImport, NamesOfAScoutFileAreOfferedWhenTheMatchHasOthers) {
    MatchConfig config = tennisMatch();
    config.sport = SportID::volleyball;
    state.matchConfig = config;
    const QByteArray scout = "[3DATAVOLLEYSCOUT]\n[3TEAMS]\nDRA;Dravnik;\nSOL;Solvane;\n[3SCOUT]\n"
                             "ap00:01;;;;;;;;1;;;1;8;\n";
    EXPECT_EQ(import("match.dvw", scout).teams[0], QString());
    EXPECT_EQ(timesOf(state), std::vector<double>{8});
    config.team1.player1 = QStringLiteral("Bled");
    state.matchConfig = config;
    EXPECT_EQ(import("match.dvw", scout).teams,
              (std::array{QStringLiteral("Dravnik"), QStringLiteral("Solvane")}));
    EXPECT_EQ(state.matchConfig.value(), config);
}

}
}
