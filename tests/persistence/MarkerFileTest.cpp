#include "persistence/MarkerFile.h"
#include "DocumentSupport.h"

#include "l10n/L10nKey.h"

#include <QTemporaryDir>
#include <sys/stat.h>

namespace pointloom {
namespace {

MatchStart startOf(SportID sport, std::int64_t sets) {
    MatchConfig config;
    config.sport = sport;
    config.numberOfSets = sets;
    return MatchStart::of(config);
}

MarkerFile read(const QByteArray& bytes, const MatchStart& match, const char* name = "points.csv") {
    return MarkerFile::decode(bytes, QString::fromUtf8(name), match);
}

MarkerFile readTennis(const QByteArray& bytes) {
    return read(bytes, startOf(SportID::tennis, 3));
}

MarkerFile readScout(const QByteArray& bytes, std::int64_t sets = 3) {
    return read(bytes, startOf(SportID::volleyball, sets), "match.dvw");
}

// "0.5 15-0; 7 30-0": time, game, and the sets that have a score.
std::string inWords(const MarkerFile& file) {
    QStringList words;
    for (const auto& [marker, line] : file.markers) {
        const auto [game1, game2] = gameTexts(marker.score);
        QString word = QStringLiteral("%1 %2-%3").arg(marker.startTime).arg(game1, game2);
        for (const SetScore& set : setsOf(marker.score)) {
            if (set != SetScore{})
                word += QStringLiteral(" (%1-%2)").arg(set.team1).arg(set.team2);
        }
        words += word + (servingSide(marker.score) == Side::second ? QStringLiteral(" *2") : QString());
    }
    return words.join(QStringLiteral("; ")).toStdString();
}

using Faults = std::vector<LineFault>;

TEST(PointList, PointsAreCountedByTheRulesOfTheMatch) {
    const MarkerFile file =
        readTennis("time,point,label\n3.7,1\n0:12,1,\"Ace, wide\"\n1:00:03.5,2\n70,1\n65,1\n");
    EXPECT_EQ(file.kind, MarkerFile::Kind::points);
    EXPECT_EQ(inWords(file), "3.7 15-0; 12 30-0; 65 40-0; 70 0-0 (1-0) *2; 3603.5 0-15 (1-0) *2");
    EXPECT_EQ(file.markers[1].marker.label, QStringLiteral("Ace, wide"));
    EXPECT_FALSE(file.markers[0].marker.label);
    EXPECT_EQ(file.markers[2].line, 6);
    EXPECT_EQ(file.firstPoint, file.markers[0].marker.id);
    EXPECT_TRUE(file.leftOut.empty());
}

TEST(PointList, SpreadsheetsOfAllLanguagesAreRead) {
    const char* expected = "12.5 15-0; 61.25 15-15";
    EXPECT_EQ(inWords(readTennis("12,5;1\r\n1:01,25;2;;\r\n")), expected);
    EXPECT_EQ(inWords(readTennis("Zeit\tPunkt\r12.5\t1\r61,25\t2\t\t\r")), expected);
    EXPECT_EQ(inWords(readTennis("\"12,5\",1\n# pause\n\n\"61,25\",\"2\"")), expected);
    const QString text = QStringLiteral("12,5\t1\tSatz\u00a01\n61,25\t2\n");
    const QByteArray utf16(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    const MarkerFile wide = readTennis("\xFF\xFE" + utf16);
    EXPECT_EQ(inWords(wide), expected);
    EXPECT_EQ(wide.markers[0].marker.label, QStringLiteral("Satz\u00a01"));
    EXPECT_EQ(readTennis("1;1;\xC9t\xE9").markers[0].marker.label, QStringLiteral("\u00c9t\u00e9"))
        << "Windows-1252";
    EXPECT_EQ(readTennis("1;1;Kr\xE8 \x9A").markers[0].marker.label, QStringLiteral("Kr\u010d \u0161"))
        << "Windows-1250";
}

TEST(PointList, LinesThatAreNoPointsAreNamed) {
    const MarkerFile file = readTennis("time,point\n1,1\n2,3\nnever,1\n\n1:75,2\n4,2,x,y\n5\n6,2\n");
    EXPECT_EQ(inWords(file), "1 15-0; 6 15-15");
    using enum L10nKey;
    EXPECT_EQ(file.leftOut, (Faults{{3, importNoPoint},
                                    {4, importNoTime},
                                    {6, importNoTime},
                                    {7, importNoPoint},
                                    {8, importNoPoint}}));
    const MarkerFile none = readTennis("10;0\n11;0\n");
    EXPECT_TRUE(none.markers.empty());
    EXPECT_EQ(none.leftOut, (Faults{{1, importNoPoint}, {2, importNoPoint}}));
}

TEST(PointList, NothingIsCountedAfterTheMatch) {
    QByteArray points;
    for (int i = 0; i < 24; ++i)
        points += QByteArray::number(i) + ";2\n";
    MatchStart set = startOf(SportID::tennis, 1);
    MarkerFile file = read(points + "30;1\n31;2\n", set);
    EXPECT_EQ(file.markers.size(), 24U) << "six games";
    EXPECT_EQ(file.leftOut, (Faults{{25, L10nKey::importAfterMatch}, {26, L10nKey::importAfterMatch}}));

    set.score.score = ScoreState{{{5, 5, {}}}, {GamePoint::zero, GamePoint::forty}, 1};
    file = read("3;2\n4;1\n", set);
    EXPECT_EQ(inWords(file), "3 0-0 (5-6) *2; 4 15-0 (5-6) *2") << "from the initial score on";
    set.score.score = PointScoreState{{{}}, {}, 1};
    EXPECT_EQ(documentFault([&] { read("3;2\n", set); }),
              "points.csv: the initial score cannot be counted on from");
}

TEST(PointList, PointsOfTheSameSecondAllCount) {
    const MarkerFile file = readTennis("5,1\n5,1\n5,2\n6,2");
    ASSERT_EQ(file.markers.size(), 4U);
    EXPECT_LT(file.markers[0].marker.startTime, file.markers[1].marker.startTime);
    EXPECT_LT(file.markers[1].marker.startTime, file.markers[2].marker.startTime);
    EXPECT_LT(file.markers[2].marker.startTime, 5.05) << "within a frame or two";
    EXPECT_EQ(gameTexts(file.markers[3].marker.score), std::pair(QStringLiteral("30"), QStringLiteral("30")));
}

TEST(MarkerTable, SemicolonsAndTabsAreReadWithDecimalCommas) {
    for (const char* table : {"Zeit;Name;;;;;\r\n3,5;Los;1;0;0;0;0\r\n0:45;\"Satz; 1\";2;40;ad;6;3;1;0\r\n",
                              "3.5\tLos\t1\t0\t0\t0\t0\n45\t\"Satz; 1\"\t2\t40\tad\t6\t3\t1\t0\t\t\n"}) {
        const MarkerFile file = readTennis(table);
        EXPECT_EQ(file.kind, MarkerFile::Kind::table);
        EXPECT_EQ(inWords(file), "3.5 0-0; 45 40-Ad (6-3) (1-0) *2");
        EXPECT_EQ(file.markers[1].marker.label, QStringLiteral("Satz; 1"));
        EXPECT_TRUE(file.leftOut.empty());
    }
}

TEST(MarkerTable, SpreadsheetsWriteSeveralEncodings) {
    for (const char* table : {"\xEF\xBB\xBF"
                              "1,\xC3\x89t\xC3\xA9,1,0,0,0,0",
                              "1,\xC9t\xE9,1,0,0,0,0"})
        EXPECT_EQ(readTennis(table).markers.at(0).marker.label, QStringLiteral("\u00c9t\u00e9"));
}

TEST(MarkerTable, LinesThatAreLeftOutAreNamedByTheirNumberInTheFile) {
    const MarkerFile file = readTennis("startTime,label\r\n# no\r\n1,,1,0,0,0,0\r\n\r\n0:03,,1,0,0,0,0\r\n"
                                       "4,,3,0,0,0,0\r\n5,,1,0,0,0\r\n");
    using enum L10nKey;
    EXPECT_EQ(file.leftOut, (Faults{{5, importNoTime}, {6, importNoServer}, {7, importFewFields}}));
    EXPECT_EQ(file.lineCount, 4);
    EXPECT_EQ(file.markers.front().line, 3);
}

constexpr const char* scoutHead = "[3DATAVOLLEYSCOUT]\r\nFILEFORMAT: 2.0\r\n[3MATCH]\r\n"
                                  "11/22/2026;18.00;2026/2027;Liga;;;;7;1250;1;Z;0;\r\n"
                                  "[3TEAMS]\r\nBRA;Bra\x9Alov\xE8"
                                  "e;1;;;\r\nNOR;Nord/S\xFC"
                                  "d;1;;;\r\n[3SET]\r\n"
                                  "True;;;; 2-1;9;\r\n[3SCOUT]\r\n";

TEST(ScoutFile, ScoresServiceAndTeamsAreTakenAsTheyStand) {
    const MarkerFile file = readScout(QByteArray(scoutHead) + "*P07>LUp;;;;;;;18.00.00;1;1;1;1;20;;\r\n"
                                                              "a10SQ+~~~16C;;;;;;;18.00.40;1;1;1;1;31;;\r\n"
                                                              "*07AH#X5~47;s;p;;;;;18.00.44;1;1;1;1;36;;\r\n"
                                                              "*p01:00;;;;;;;18.00.45;1;1;1;1;37;;\r\n"
                                                              "*07SM=~~~16C;;;;;;;18.01.00;1;1;1;1;52;;\r\n"
                                                              "ap01:01;;;;;;;18.01.05;1;1;1;1;57;;\r\n"
                                                              "ap01:09;;;;;;;18.01.55;1;1;1;1;107;;\r\n"
                                                              "**1set;;;;;;;18.02.00;2;1;1;1;110;;\r\n"
                                                              "*12SM#~~~16C;;;;;;;18.06.00;2;1;1;1;352;;\r\n"
                                                              "*p01:00;;;;;;;18.06.04;2;1;1;1;356;;\r\n");
    EXPECT_EQ(file.kind, MarkerFile::Kind::scout);
    EXPECT_EQ(inWords(file), "31 0-0 *2; 37 1-0; 57 1-1 *2; 107 0-0 (1-9); 356 1-0 (1-9)");
    EXPECT_EQ(setsOf(file.markers[0].marker.score).size(), 3U);
    EXPECT_EQ(file.markers[1].marker.id, file.firstPoint) << "the marker before is the first service";
    EXPECT_EQ(file.teams[0], QStringLiteral("Bra\u0161lov\u010de"));
    EXPECT_EQ(file.teams[1], QStringLiteral("Nord/S\u00fcd"));
    EXPECT_TRUE(file.leftOut.empty());
}

TEST(ScoutFile, WithoutAVideoTheClockTellsTheTimes) {
    const MarkerFile file = readScout(QByteArray(scoutHead) + "*p01:00;;;;;;;23.59.50;1;1;1;1;;;\n"
                                                              "*p02:00;;;;;;;00.00.15;1;1;1;1;;;\n"
                                                              "*p03:00;;;;;;;;1;1;1;1;;;\n");
    EXPECT_EQ(inWords(file), "0 1-0; 25 2-0");
    EXPECT_EQ(file.leftOut, (Faults{{13, L10nKey::importNoTime}}));
}

TEST(ScoutFile, RalliesThatHaveNoPlaceInTheVideoAreNamed) {
    const MarkerFile file =
        readScout(QByteArray("[3DATAVOLLEYSCOUT]\n[3SCOUT]\n") + "*p01:00;;;;;;;;1;1;1;1;10;;\n"
                                                                 "*p0x:00;;;;;;;;1;1;1;1;20;;\n"
                                                                 "*p02:00;;;;;;;;1;1;1;1;9;;\n"
                                                                 "*p03:00;;;;;;;;1;1;1;1;;;\n"
                                                                 "ap03:01;;;;;;;;2;1;1;1;40;;\n"
                                                                 "ap03:02;;;;;;;;2;1;1;2;50;;\n");
    EXPECT_EQ(inWords(file), "10 1-0; 40 3-1 (3-0) *2") << "the first set has its last score";
    using enum L10nKey;
    EXPECT_EQ(
        file.leftOut,
        (Faults{{4, importNoScore}, {5, importTimeGoesBack}, {6, importNoTime}, {8, importOtherVideo}}));
}

TEST(MarkerFile, WhatDoesNotFitTheMatchIsRefusedWithTheReason) {
    const QByteArray scout =
        QByteArray(scoutHead) + "*p01:00;;;;;;;;1;1;1;1;1;;\n*p01:00;;;;;;;;2;1;1;1;9;;\n";
    const auto faultIn = [](SportID sport, std::int64_t sets, const QByteArray& bytes, const char* name) {
        return documentFault([&] { read(bytes, startOf(sport, sets), name); });
    };
    EXPECT_EQ(faultIn(SportID::volleyball, 3, CSVParser::sampleText().toUtf8(), "t.csv"),
              "t.csv: its scores are of another sport than this match");
    EXPECT_EQ(faultIn(SportID::tennis, 3, scout, "m.dvw"),
              "m.dvw: its scores are of another sport than this match");
    EXPECT_EQ(faultIn(SportID::volleyball, 1, scout, "m.dvw"), "m.dvw: it has more sets than this match");
    EXPECT_EQ(faultIn(SportID::volleyball, 3, "{\"match\": 1}", "m.DVW"),
              "m.DVW: a DataVolley file has a section [3SCOUT], which is missing");
    EXPECT_EQ(faultIn(SportID::tennis, 3, QByteArray("PK\x03\x04\0\0", 6), "t.csv"),
              "t.csv: not a text file (save a spreadsheet as CSV)");
    EXPECT_EQ(faultIn(SportID::badminton, 3, QByteArray("0,1\n").repeated(20'001), "p.csv"),
              "p.csv: more than 20000 points");
    EXPECT_EQ(MarkerFileError(QStringLiteral("/a/t.csv"), L10nKey::importTooManySets).in(Language::german),
              QStringLiteral("t.csv: es hat mehr S\u00e4tze als dieses Match"));
}

TEST(MarkerFile, FilesMustBeRegularAndSmall) {
    const QTemporaryDir folder;
    const auto fault = [](const QString& path) {
        return documentFault([&] { MarkerFile::read(path, startOf(SportID::tennis, 3)); });
    };
    const QString file = folder.filePath(QStringLiteral("match.csv"));
    EXPECT_EQ(fault(file), "match.csv: no such file");
    writeFile(file, QByteArray(1024 * 1024 + 1, '\n'));
    EXPECT_EQ(fault(file), "match.csv: larger than 1 MB");
    writeFile(file, QByteArray(1024 * 1024, '\n'));
    EXPECT_TRUE(MarkerFile::read(file, startOf(SportID::tennis, 3)).markers.empty()) << "just small enough";
    const QString pipe = folder.filePath(QStringLiteral("pipe.csv"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(fault(pipe), "pipe.csv: is not a regular file");
}

TEST(MarkerFile, LinesAreJoinedByTheirReasonAndVeryManyAreCounted) {
    Faults faults{{2, L10nKey::importNoTime}, {3, L10nKey::importNoPoint}};
    for (qint64 line = 5; line < 25; ++line)
        faults.push_back({line, L10nKey::importNoTime});
    const auto reasons = byReason(faults);
    ASSERT_EQ(reasons.size(), 2U);
    EXPECT_EQ(reasons[0].second, QStringLiteral("2, 5, 6, 7, 8, 9, 10, 11 \u2026 (+13)"));
    EXPECT_EQ(reasons[1].second, QStringLiteral("3"));
}

}
}
