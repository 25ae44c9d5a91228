#include "model/Marker.h"
#include "persistence/CSVParser.h"
#include "persistence/ProjectFile.h"
#include "Program.h"

#include <QDir>
#include <QImage>

namespace pointloom {
namespace {

using NewCommandTest = ProgramTest;
using CheckCommandTest = ProgramTest;
using ScoreboardCommandTest = ProgramTest;
using MarkersCommandTest = ProgramTest;
using TemplatesCommandTest = ProgramTest;
using CaptionsCommandTest = ProgramTest;

TEST_F(TemplatesCommandTest, ListsTheCatalogueOrOneSport) {
    const auto ids = [&](const char* arguments) {
        std::vector<std::string> found;
        for (const auto& entry : run(arguments).outJson())
            found.push_back(entry.at("id"));
        return found;
    };
    EXPECT_EQ(ids("templates --json").size(), allCases<TemplateID>().size());
    EXPECT_EQ(ids("templates --json --sport squash"),
              (std::vector<std::string>{"squashCourt", "squashDark", "squashNeon", "squashMinimal"}));
    EXPECT_EQ(ids("templates --json --sport padel"), ids("templates --json --sport tennis"));
    EXPECT_EQ(run("templates --json --sport squash").outJson()[1],
              (json::Value{{"id", "squashDark"},
                           {"displayName", "Dark Pro"},
                           {"description", "Charcoal/gold \u2014 dark pro"},
                           {"sport", "squash"}}));
    EXPECT_EQ(run("templates --sport padel").out.count('\n'), 10);
}

TEST_F(MarkersCommandTest, ThePrintedSampleReadsBack) {
    const Outcome sample = run("markers --sample");
    EXPECT_EQ(QString::fromUtf8(sample.out), CSVParser::sampleText());
    write(QStringLiteral("s.csv"), sample.out);
    const auto markers = json::decode<std::vector<Marker>>(run("markers s.csv --json").outJson());
    ASSERT_EQ(markers.size(), 5U);
    EXPECT_EQ(markers[4].label, QStringLiteral("Match point"));
    EXPECT_EQ(run("markers s.csv").out.split('\n').at(3),
              "     45.00 s  serving 1  game 15-0  sets 6-3 0-0 0-0  Second set");
}

TEST_F(CaptionsCommandTest, MarkersGoOutAndComeBack) {
    write(QStringLiteral("in.csv"), "1.5;\"Set; \"\"1\"\"\";2;adv;40;6;4;1;0\n3;;1;0;15;6;4;1;0\n");
    ASSERT_EQ(run((std::string(newTennis) + " --markers in.csv").c_str()).status, 0);
    ASSERT_EQ(run("captions m.plp -o out.csv").status, 0);
    ASSERT_EQ(run("captions m.plp -o out.json").status, 0);
    const auto read = [&](const char* name) {
        auto markers = json::decode<std::vector<Marker>>(run(name).outJson());
        for (Marker& marker : markers)
            marker.id = {};
        return markers;
    };
    const auto markers = read("markers in.csv --json");
    ASSERT_EQ(markers.size(), 2U);
    EXPECT_EQ(markers[0].label, QStringLiteral("Set; \"1\""));
    EXPECT_EQ(read("markers out.csv --json"), markers);
    QFile written(path(QStringLiteral("out.json")));
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(json::decode<std::vector<Marker>>(json::parse(written.readAll())).size(), 2U);
}

TEST_F(CaptionsCommandTest, RefusesWhatItCannotWrite) {
    ASSERT_EQ(run(newTennis).status, 0);
    EXPECT_EQ(faultOf("captions m.plp -o m.txt", 2),
              "--output: the name must end in .srt, .vtt, .csv or .json");
    EXPECT_EQ(faultOf("captions m.plp -o m.srt"), "m.plp: no video is chosen; name one with --video");
    EXPECT_FALSE(exists(QStringLiteral("m.srt")));
    ASSERT_EQ(run("captions m.plp -o m.json").status, 0);
}

TEST_F(MarkersCommandTest, LabelsLeaveTheTerminalAlone) {
    write(QStringLiteral("e.csv"), "1,\x1b[2Jx,1,0,0,0,0");
    EXPECT_EQ(run("markers e.csv").out, "      1.00 s  serving 1  game 0-0  sets 0-0  ?[2Jx\n");
}

TEST_F(MarkersCommandTest, ATableWithoutMarkersIsAFault) {
    write(QStringLiteral("h.csv"), "startTime,label\nx,y\n");
    EXPECT_EQ(faultOf("markers h.csv --json"), "h.csv: no valid markers in 1 lines of data");
    write(QStringLiteral("l.csv"), QByteArray("1,\0,1,0,0,0,0", 14));
    EXPECT_EQ(faultOf("markers l.csv"), "l.csv: not a text file (save a spreadsheet as CSV)");
    write(QStringLiteral("p.csv"), "1,1\n");
    EXPECT_EQ(faultOf("markers p.csv"), "p.csv: no table of markers; \"new --points\" reads it");
}

TEST_F(MarkersCommandTest, LinesThatWereLeftOutAreNoted) {
    write(QStringLiteral("t.csv"), "1;;1;0;0;0;0\n2;;3;0;0;0;0\n");
    const Outcome outcome = run("markers t.csv");
    EXPECT_EQ(outcome.out.count('\n'), 1);
    EXPECT_EQ(outcome.errText(),
              "pointloom-cli: note: t.csv: left out, line 2: neither 1 nor 2 in the third field\n");
}

TEST_F(NewCommandTest, PointsBecomeMarkers) {
    write(QStringLiteral("p.txt"), "10;1\n20,5;2\n");
    const std::string squash = "new -o p.plp --sport squash --template squashDark --points p.txt ";
    ASSERT_EQ(run((squash + "--team1 A --team2 B --first-point 2.5 --serving 2").c_str()).status, 0);
    const ProjectFile project = ProjectFile::load(path(QStringLiteral("p.plp")));
    ASSERT_EQ(project.markers.size(), 2U);
    EXPECT_EQ(project.markers[0].startTime, 2.5);
    EXPECT_EQ(project.markers[1].startTime, 13);
    EXPECT_EQ(std::get<PointScoreState>(project.markers[1].score).currentGame, (PointGameScore{1, 1}));
    ASSERT_TRUE(project.initialScore);
    EXPECT_EQ(servingSide(*project.initialScore), Side::second);

    EXPECT_EQ(faultOf((squash + "--team1 A --force").c_str(), 2), "--team2 is required");
    write(QStringLiteral("p.txt"), "10;1\n20,5;0\nx;1\n30;2\n");
    EXPECT_EQ(faultOf((squash + "--team1 A --team2 B --force").c_str()),
              "p.txt: line 2: neither 1 nor 2 in the second field; line 3: no time that can be read");
}

TEST_F(NewCommandTest, AScoutFileNamesTheTeamsAndShowsHowManySetsThereWere) {
    QByteArray scout = "[3DATAVOLLEYSCOUT]\n[3TEAMS]\nBLE;Bled;3;\nNOR;Nord/S\xC3\xBC"
                       "d;0;\n[3SCOUT]\n";
    for (const char* set : {"1", "2", "3"})
        scout += QByteArray("*p25:20;;;;;;;;") + set + ";;;1;" + set + "00;\n**" + set + "set;;\n";
    write(QStringLiteral("m.dvw"), scout);
    const Outcome outcome = run("new -o v.plp --sport volleyball --template volleyNeon --points m.dvw");
    ASSERT_EQ(outcome.status, 0) << outcome.errText();
    const ProjectFile project = ProjectFile::load(path(QStringLiteral("v.plp")));
    EXPECT_EQ(project.matchConfig->team1.player1, QStringLiteral("Bled"));
    EXPECT_EQ(project.matchConfig->team2.player1, QStringLiteral("Nord/S\u00fcd"));
    EXPECT_EQ(project.matchConfig->numberOfSets, 5) << "three won sets";
    const SetScore won{25, 20, {}};
    EXPECT_EQ(setsOf(project.markers.back().score), (std::vector<SetScore>{won, won, won, {}, {}}));
    EXPECT_EQ(
        faultOf("new -o w.plp --sport volleyball --template volleyNeon --points m.dvw --team1 A/B --sets 3 "
                "--markers m.csv",
                2),
        "give either --markers or --points");
}

TEST_F(NewCommandTest, WritesADocumentWithAbsolutePaths) {
    write(QStringLiteral("v.mp4"), "x");
    write(QStringLiteral("l.png"), "x");
    write(QStringLiteral("s.csv"), CSVParser::sampleText().toUtf8());
    const Outcome outcome =
        run("new -o m.plp --sport padel --template wimbledon --team1 \"Ana/B\u00e9a\" --flags1 fr,GB --team2 "
            "Cleo/Dora"
            " --sets 3 --video v.mp4 --logo ./l.png --markers s.csv --position 0.5,0.25 --scale 1.5");
    ASSERT_EQ(outcome.status, 0) << outcome.errText();
    EXPECT_TRUE(outcome.err.isEmpty()) << outcome.errText();

    const ProjectFile project = ProjectFile::load(path(QStringLiteral("m.plp")));
    const QString folderPath = QDir(folder.path()).canonicalPath();
    EXPECT_EQ(project.videoPath, folderPath + QStringLiteral("/v.mp4"));
    EXPECT_EQ(project.selectedTemplate, TemplateID::wimbledon);
    EXPECT_EQ(project.markers.size(), 5U);
    EXPECT_EQ(project.scoreboardPosition(), QPointF(0.5, 0.25));
    EXPECT_EQ(project.scoreboardUserScale, 1.5);
    ASSERT_TRUE(project.matchConfig);
    EXPECT_EQ(project.matchConfig->format, MatchFormat::doubles) << "two pairs";
    EXPECT_EQ(project.matchConfig->numberOfSets, 3);
    EXPECT_EQ(project.matchConfig->team1, (TeamConfig{QStringLiteral("Ana"), QStringLiteral("B\u00e9a"),
                                                      QStringLiteral("FR"), QStringLiteral("GB")}));
    EXPECT_EQ(project.matchConfig->logoURL, QUrl::fromLocalFile(folderPath + QStringLiteral("/l.png")));
}

TEST_F(NewCommandTest, ABoardTakesThePlaceOfATemplate) {
    write(QStringLiteral("club.json"),
          R"({"version":1,"template":"dark","board":{"name":"Club","colors":{"main":"#0B5D3B"}}})");
    const std::string match = "new -o m.plp --sport tennis --team1 Ana --team2 Bea ";
    ASSERT_EQ(run((match + "--board club.json").c_str()).status, 0);
    const ProjectFile project = ProjectFile::load(path(QStringLiteral("m.plp")));
    EXPECT_EQ(project.selectedTemplate, TemplateID::dark);
    ASSERT_TRUE(project.matchConfig->board);
    EXPECT_EQ(project.matchConfig->board->name, QStringLiteral("Club"));
    const auto colorOf = [&](const char* arguments) {
        EXPECT_EQ(run((std::string("scoreboard m.plp -o b.png ") + arguments).c_str()).status, 0);
        return QImage(path(QStringLiteral("b.png"))).pixelColor(10 + 100, 10 + 10);
    };
    EXPECT_EQ(colorOf(""), QColor(0x0B, 0x5D, 0x3B));
    EXPECT_EQ(colorOf("--template dark"), QColor(17, 17, 17)) << "the template itself";
    ASSERT_EQ(run((match + "--template classic --force").c_str()).status, 0);
    EXPECT_EQ(colorOf("--board club.json"), QColor(0x0B, 0x5D, 0x3B));

    EXPECT_EQ(faultOf((match + "--force").c_str(), 2), "give either --template or --board");
    EXPECT_EQ(faultOf("new -o x.plp --sport squash --team1 A --team2 B --board club.json", 2),
              "--board: \"dark\" is not made for squash; see \"pointloom-cli templates --sport squash\"");
    EXPECT_EQ(faultOf("new -o club.json.plp --sport tennis --team1 A --team2 B --board m.plp"),
              "m.plp: template: missing");
}

TEST_F(NewCommandTest, OldDocumentsAreReplacedOnlyOnDemand) {
    ASSERT_EQ(run(newTennis).status, 0);
    EXPECT_EQ(faultOf(newTennis), "m.plp: already exists; --force replaces it");
    EXPECT_EQ(run((std::string(newTennis) + " --force").c_str()).status, 0);
}

TEST_F(NewCommandTest, WhatDoesNotFitTogetherIsWrongUsage) {
    const auto fault = [&](const std::string& more) {
        return faultOf(("new -o x.plp --team1 A/B --team2 C/D " + more).c_str(), 2);
    };
    EXPECT_EQ(fault("--sport volleyball --template classic"),
              "--template: \"classic\" is not made for volleyball; see \"pointloom-cli templates --sport "
              "volleyball\"");
    EXPECT_EQ(fault("--sport volleyball --template volleyNeon --sets 1"),
              "--sets: Volleyball is played over 3 or 5 sets, not 1");
    EXPECT_EQ(fault("--sport squash --template squashDark --format doubles"),
              "--format: Squash has no doubles");
    EXPECT_EQ(
        fault("--sport squash --template squashDark --markers m.csv").find("--markers: a table gives tennis"),
        0U);
    EXPECT_EQ(fault("--sport tennis --template classic --position 2,0"),
              "--position: give two numbers from 0 to 1, as 0.15,0.1");
    EXPECT_EQ(
        faultOf("new -o x.plp --team1 A/B --team2 C --format doubles --sport tennis --template classic", 2),
        "--format: doubles need two names in each team, as --team1 A/B");
    EXPECT_EQ(faultOf("new -o x.plp --team1 A --team2 B --sport tennis --template classic --video none.mp4"),
              "--video: no such file: none.mp4");
    EXPECT_FALSE(exists(QStringLiteral("x.plp")));

    const Outcome singles = run("new -o x.plp --team1 A/B --team2 C/D --sport squash --template squashDark");
    EXPECT_EQ(singles.status, 0);
    EXPECT_EQ(singles.errText(),
              "pointloom-cli: note: a singles match: the scoreboard shows the first name of each team\n");
}

TEST_F(CheckCommandTest, SaysWhatIsMissing) {
    ASSERT_EQ(run(newTennis).status, 0);
    const Outcome outcome = run("check m.plp --json");
    EXPECT_EQ(outcome.status, 0); // unfinished is no fault
    const json::Value report = outcome.outJson();
    EXPECT_FALSE(report.at("complete"));
    EXPECT_EQ(report.at("template"), "classic");
    EXPECT_EQ(report.at("match").at("team1").at("player1"), "Ana");
    EXPECT_EQ(report.at("unset"), json::Value({"no video is chosen"}));

    ProjectFile project = ProjectFile::load(path(QStringLiteral("m.plp")));
    project.videoPath = QStringLiteral("/nowhere/v.mp4");
    project.watermarkPath = QStringLiteral("/nowhere/w.png");
    project.markers = {{QUuid::createUuid(), 1, PointScoreState{}, {}}};
    project.save(path(QStringLiteral("m.plp")));
    write(QStringLiteral("v.mp4"), "no video at all");
    const json::Value moved = run("check m.plp --json").outJson();
    EXPECT_EQ(moved.at("warnings").size(), 2U)
        << moved; // the video beside the project; points in a tennis match
    EXPECT_EQ(moved.at("missing").size(), 2U) << moved; // the watermark, and a video that cannot be read
    EXPECT_EQ(moved.at("missing")[0], "the watermark is missing: /nowhere/w.png");
    EXPECT_EQ(moved.at("missing")[1].get<std::string>().find("the video cannot be read: "), 0U);
}

TEST_F(CheckCommandTest, SaysOnOneLineEachWhatIsOddInADocument) {
    ASSERT_EQ(run(newTennis).status, 0);
    ProjectFile project = ProjectFile::load(path(QStringLiteral("m.plp")));
    project.matchConfig->team1.player1 = QStringLiteral("A\x1b[31m\nB");
    project.matchConfig->numberOfSets = -5;
    project.rules = {"beach"};
    project.save(path(QStringLiteral("m.plp")));
    const QString report = QString::fromUtf8(run("check m.plp").out);
    EXPECT_TRUE(report.contains(u"match       A?[31m?B  -  ")) << report.toStdString();
    EXPECT_TRUE(report.contains(u"warning     Tennis is not played over -5 sets\n")) << report.toStdString();
    EXPECT_TRUE(report.contains(u"warning     rules: \"beach\" is no rule of tennis\n"))
        << report.toStdString();
}

TEST_F(ScoreboardCommandTest, DrawsTheScoreOfAMoment) {
    write(QStringLiteral("s.csv"), CSVParser::sampleText().toUtf8());
    ASSERT_EQ(run((std::string(newTennis) + " --markers s.csv").c_str()).status, 0);
    const auto draw = [&](const char* arguments) {
        const Outcome outcome = run((std::string("scoreboard m.plp -o b.png ") + arguments).c_str());
        EXPECT_EQ(outcome.status, 0) << outcome.errText();
        return QImage(path(QStringLiteral("b.png")));
    };
    const QImage start = draw("");
    EXPECT_EQ(start.size(), QSize(270, 97)) << "three sets, short names";
    EXPECT_EQ(start.pixelColor(2, 2).alpha(), 0);
    EXPECT_GT(start.pixelColor(40, 30).alpha(), 0);
    EXPECT_NE(draw("--at 60"), start);
    EXPECT_EQ(draw("--at 0.5"), start);
    EXPECT_NE(draw("--template dark"), start);
    EXPECT_EQ(draw("--scale 2").size(), QSize(540, 194));
}

TEST_F(ScoreboardCommandTest, ATemplateOfAnotherKindOfSportIsAFault) {
    ASSERT_EQ(run(newTennis).status, 0);
    EXPECT_EQ(faultOf("scoreboard m.plp --template volleyNeon -o b.png"),
              "m.plp: the template \"volleyNeon\" draws another kind of score than the match has");
    EXPECT_FALSE(exists(QStringLiteral("b.png")));
}

}
}
