#include "persistence/ProjectFile.h"
#include "DocumentSupport.h"
#include "export/ExportJob.h"
#include "persistence/CSVParser.h"
#include "persistence/ProjectSession.h"
#include "json/JsonDocument.h"

#include <csignal>
#include <QDir>
#include <QTemporaryDir>
#include <sys/resource.h>
#include <sys/stat.h>

namespace pointloom {
namespace {

class ProjectFileTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("match.plp"));

    ProjectFile loadText(const QByteArray& text) const {
        writeFile(path, text);
        return ProjectFile::load(path);
    }

    std::string faultOf(const QByteArray& text) const {
        return documentFault([&] { loadText(text); });
    }
};

ProjectFile fullProject() {
    ProjectFile project;
    project.selectedSport = SportID::padel;
    project.selectedTemplate = TemplateID::rolandgarros;
    project.matchConfig =
        MatchConfig{SportID::padel,
                    MatchFormat::doubles,
                    {QStringLiteral("Ana"), QStringLiteral("Bea"), QStringLiteral("FR"), {}},
                    {QStringLiteral("Cleo"), QStringLiteral("Dora"), {}, {}},
                    3,
                    QUrl::fromLocalFile(QStringLiteral("/club/logo.png"))};
    project.matchConfig->board = BoardStyle{.name = QStringLiteral("Club"),
                                            .colors = {.main = BoardColor{1, 2, 3, 4}},
                                            .order = BoardOrder::pointsFirst};
    project.markers = {
        {QUuid::createUuid(), 1.25, ScoreState{{{6, 7, 4}}, {GamePoint::deuce, GamePoint::deuce}, 2}, {}},
        {QUuid::createUuid(), 9, PointScoreState{{{25, 23, {}}}, {1, 2}, 1}, QStringLiteral("Break")}};
    project.initialScore = ScoreState{{{0, 0, {}}}, {}, 1};
    project.scoreboardPositionX = 0.1;
    project.scoreboardPositionY = 0.9;
    project.scoreboardUserScale = 1.5;
    project.trimStart = 0.5;
    project.trimEnd = 60.125;
    project.watermarkPath = QStringLiteral("/club/mark.png");
    project.watermarkCorner = WatermarkCorner::topLeft;
    project.videoPath = QStringLiteral("/videos/match #1 100%.mp4");
    project.rules = {"short-sets", "no-ad"};
    return project;
}

QByteArray smallDocument(const QByteArray& more, const QByteArray& markers = "[]") {
    return "{\"version\":1,\"scoreboardPositionX\":0.5,\"scoreboardPositionY\":0.5,\"trimStart\":0,"
           "\"markers\":" +
           markers + more + '}';
}

const QByteArray legacyScore =
    R"({"sets":[{"team1":6,"team2":4}],"currentGame":{"team1":"forty","team2":"zero"},"servingTeam":2})";

QByteArray markerWith(const QByteArray& score) {
    return R"({"id":"11111111-2222-3333-4444-555555555555","startTime":7.5,"label":"Set","score":)" + score +
           '}';
}

TEST_F(ProjectFileTest, ABoardIsLeftOutWhereThereIsNone) {
    ProjectFile project = fullProject();
    project.matchConfig->board.reset();
    project.save(path);
    EXPECT_FALSE(readFile(path).contains("board\""));
    EXPECT_EQ(
        faultOf(smallDocument(
            R"(,"matchConfig":{"sport":"tennis","format":"singles","numberOfSets":1,)"
            R"("team1":{"player1":"A"},"team2":{"player1":"B"},"board":{"name":"","colors":{"row2":7}}})")),
        "match.plp: matchConfig.board.colors.row2: expected a text");
}

TEST_F(ProjectFileTest, ADocumentReadsBackAsItWasSaved) {
    const ProjectFile project = fullProject();
    project.save(path);
    EXPECT_EQ(ProjectFile::load(path), project);
    EXPECT_TRUE(readFile(path).contains("\"videoPath\": \"/videos/match #1 100%.mp4\""))
        << "a path, not a URL";
}

TEST_F(ProjectFileTest, SavedKeysAreSortedAndAbsentOnesLeftOut) {
    ProjectFile project;
    project.scoreboardPositionX = 0.15;
    project.scoreboardPositionY = 0.1;
    project.save(path);
    EXPECT_EQ(readFile(path).toStdString(), "{\n"
                                            "  \"markers\": [],\n"
                                            "  \"scoreboardPositionX\": 0.15,\n"
                                            "  \"scoreboardPositionY\": 0.1,\n"
                                            "  \"trimStart\": 0.0,\n"
                                            "  \"version\": 1\n"
                                            "}\n");
    EXPECT_EQ(ProjectFile::load(path), project);
}

TEST_F(ProjectFileTest, AnyVersionAndUnknownKeysAreAccepted) {
    QByteArray text = smallDocument(R"(,"cuts":[],"language":"fr")");
    text.replace("\"version\":1", "\"version\":7");
    EXPECT_EQ(loadText(text).version, 7);
}

TEST_F(ProjectFileTest, LegacyDocumentsBecomeTennisDocuments) {
    QByteArray text =
        smallDocument(",\"initialScore\":" + legacyScore +
                          R"(,"selectedTemplate":"classic","trimEnd":8,"watermarkCorner":"topRight")",
                      '[' + markerWith(legacyScore) + ']');
    text.replace("\"version\":1,", "");
    const ProjectFile project = loadText(text);
    EXPECT_EQ(project.version, 1);
    EXPECT_FALSE(project.scoreboardUserScale);
    EXPECT_EQ(project.selectedTemplate, TemplateID::classic);
    EXPECT_EQ(project.watermarkCorner, WatermarkCorner::topRight);
    EXPECT_EQ(project.trimEnd, 8);
    const SportScoreState score = ScoreState{{{6, 4, {}}}, {GamePoint::forty, GamePoint::zero}, 2};
    EXPECT_EQ(project.initialScore, score);
    ASSERT_EQ(project.markers.size(), 1U);
    EXPECT_EQ(project.markers[0].score, score);
    EXPECT_EQ(project.markers[0].startTime, 7.5);
    EXPECT_EQ(project.markers[0].label, QStringLiteral("Set"));
}

TEST_F(ProjectFileTest, WhatIsLegacyOpensWhateverElseItHolds) {
    const QByteArray legacyMarkers = '[' + markerWith(legacyScore) + ']';
    const QByteArray scale = R"(,"scoreboardUserScale":1.5)";
    for (QByteArray text :
         {smallDocument(scale, legacyMarkers), smallDocument(R"(,"scoreboardUserScale":"1")", legacyMarkers),
          smallDocument(scale, legacyMarkers).replace("\"version\":1,", "")}) {
        const ProjectFile project = loadText(text);
        EXPECT_EQ(project.version, 1);
        EXPECT_EQ(project.markers.size(), 1U);
        EXPECT_FALSE(project.scoreboardUserScale) << "the older form has none";
    }
    EXPECT_FALSE(loadText(smallDocument(R"(,"scoreboardUserScale":"1")")).scoreboardUserScale);
}

TEST_F(ProjectFileTest, FaultsOfACurrentDocumentAreNotHiddenByTheLegacyAttempt) {
    const QByteArray good = markerWith(R"({"type":"tennis","score":)" + legacyScore + '}');
    const QByteArray golf = markerWith(R"({"type":"golf","score":{}})");
    EXPECT_EQ(faultOf(smallDocument("", '[' + good + ',' + good + ',' + good + ',' + golf + ']')),
              R"(match.plp: markers[3].score.type: unknown value "golf")");

    const QByteArray lateText = QByteArray(good).replace("7.5", "\"7.5\"");
    EXPECT_EQ(faultOf(smallDocument("", '[' + good + ',' + lateText + ']')),
              "match.plp: markers[1].startTime: expected a number");
    EXPECT_EQ(faultOf(smallDocument(R"(,"scoreboardUserScale":"1")", '[' + good + ']')),
              "match.plp: scoreboardUserScale: expected a number");
    EXPECT_EQ(faultOf(smallDocument(R"(,"rules":["no-ad",7])", '[' + good + ']')),
              "match.plp: rules[1]: expected a text");
}

TEST_F(ProjectFileTest, OtherFaultsAreThoseOfTheLegacyAttempt) {
    EXPECT_EQ(faultOf(smallDocument("", '[' + markerWith("{}") + ']')),
              "match.plp: markers[0].score.sets: missing");
    EXPECT_EQ(faultOf(smallDocument(",\"markers\":7")), "match.plp: markers: expected a list");
    EXPECT_EQ(faultOf(R"({"version":1,"trimStart":0})"), "match.plp: markers: missing");
    EXPECT_EQ(faultOf(smallDocument(R"(,"selectedTemplate":"Classic")")),
              R"(match.plp: selectedTemplate: unknown value "Classic")");
    EXPECT_EQ(faultOf("[1,2]"), "match.plp: expected an object");
    EXPECT_EQ(faultOf("{\n\"version\": }").find("match.plp: line 2, column 12: not valid JSON"), 0U);
}

TEST_F(ProjectFileTest, OnlyRegularFilesAreRead) {
    EXPECT_EQ(documentFault([&] { ProjectFile::load(path); }), "match.plp: no such file");
    EXPECT_EQ(documentFault([&] {
                  ProjectFile::load(folder.path() + u'/');
              }).find("is a folder, not a file") == std::string::npos,
              false);
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_EQ(documentFault([&] { ProjectFile::load(path); }), "match.plp: is not a regular file");
    EXPECT_EQ(documentFault([&] { ProjectFile::load(QStringLiteral("/dev/zero")); }),
              "zero: is not a regular file");
}

TEST_F(ProjectFileTest, HugeDocumentsAreRefused) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(64LL * 1024 * 1024 + 1));
    EXPECT_EQ(documentFault([&] { ProjectFile::load(path); }), "match.plp: larger than 64 MB");
    EXPECT_EQ(faultOf(smallDocument("", QByteArray(100, '[') + QByteArray(100, ']'))),
              "match.plp: nested deeper than 32 levels");
}

TEST_F(ProjectFileTest, NothingIsSavedThatWouldBeRefused) {
    const ProjectFile old = fullProject();
    old.save(path);
    ProjectFile large = old;
    large.videoPath = QString(32 * 1024 * 1024, u'\n'); // each written as two characters
    EXPECT_EQ(documentFault([&] { large.save(path); }), "match.plp: larger than 64 MB");
    EXPECT_EQ(ProjectFile::load(path), old);
}

TEST_F(ProjectFileTest, WhatTheLargestTableHoldsCanBeSaved) {
    constexpr qsizetype largestTable = 1024 * 1024; // bytes
    constexpr qsizetype largestDocument = 64 * 1024 * 1024;
    const QString setsOfOneMarker = QStringLiteral("0,,1") + QString(4000, u',');
    for (const QString& table : {QStringLiteral("0,,1,,,,\n").repeated(500), setsOfOneMarker}) {
        ProjectFile project;
        project.markers = CSVParser::parseMarkers(table);
        project.save(path);
        EXPECT_LT(readFile(path).size() * largestTable / table.size(), largestDocument);
    }
}

TEST_F(ProjectFileTest, AFailedSaveKeepsTheOldFileAndSaysWhy) {
    const ProjectFile old = fullProject();
    old.save(path);
    ProjectFile changed = old;
    changed.trimStart = std::numeric_limits<double>::infinity();
    EXPECT_EQ(documentFault([&] { changed.save(path); }),
              "match.plp: a number that is not finite cannot be written as JSON");

    changed.trimStart = 1;
    changed.markers.resize(1000, old.markers[0]);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit fourKilobytes{4096, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &fourKilobytes), 0); // as on a full disk
    EXPECT_EQ(documentFault([&] { changed.save(path); }), "match.plp: File too large");
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);

    EXPECT_EQ(ProjectFile::load(path), old);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("match.plp")});
}

TEST_F(ProjectFileTest, PlacesThatCannotBeWrittenAreNamed) {
    const ProjectFile project = fullProject();
    EXPECT_EQ(documentFault([&] { project.save(folder.filePath(QStringLiteral("none/match.plp"))); }),
              "match.plp: No such file or directory");
    EXPECT_NE(documentFault([&] { project.save(folder.path()); }).find("is a folder, not a file"),
              std::string::npos);
    EXPECT_EQ(documentFault([&] { project.save(QStringLiteral("/dev/null")); }),
              "null: is not a regular file");
}

TEST(ProjectExport, TakesEverythingThatTheDocumentSays) {
    ProjectFile project = fullProject();
    const ExportJob job = exportJobFor(project).value();
    EXPECT_EQ(job.videoPath, QStringLiteral("/videos/match #1 100%.mp4"));
    EXPECT_EQ(job.trimStart, 0.5);
    EXPECT_EQ(job.trimEnd, 60.125);
    EXPECT_EQ(job.overlay.markers, project.markers);
    EXPECT_EQ(job.overlay.initialScore, project.initialScore);
    EXPECT_EQ(job.overlay.config, project.matchConfig);
    EXPECT_EQ(job.overlay.templateID, TemplateID::rolandgarros);
    EXPECT_EQ(job.overlay.scoreboardPosition, QPointF(0.1, 0.9));
    EXPECT_EQ(job.overlay.scoreboardUserScale, 1.5);
    EXPECT_EQ(job.overlay.watermarkPath, QStringLiteral("/club/mark.png"));
    EXPECT_EQ(job.settings.watermarkCorner, WatermarkCorner::topLeft);
    EXPECT_FALSE(job.overlay.isLicensed);

    project.initialScore.reset();
    EXPECT_EQ(exportJobFor(project)->overlay.initialScore, SportScoreState(ScoreState{{{}, {}, {}}, {}, 1}));
    project.videoPath.reset();
    EXPECT_FALSE(exportJobFor(project)) << "there is nothing to export";
}

TEST_F(ProjectFileTest, PositionsAboveOneFallBackToTheDefault) {
    ProjectFile project;
    project.scoreboardPositionX = 1.0;
    project.scoreboardPositionY = -0.5;
    EXPECT_EQ(project.scoreboardPosition(), QPointF(1.0, -0.5));
    project.scoreboardPositionX = 1.0001;
    EXPECT_EQ(project.scoreboardPosition(), QPointF(0.15, 0.1));
    project.scoreboardPositionX = 0.5;
    project.scoreboardPositionY = 20;
    EXPECT_EQ(project.scoreboardPosition(), QPointF(0.15, 0.1));
}

}
}
