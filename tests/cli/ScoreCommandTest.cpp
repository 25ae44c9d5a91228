#include "Program.h"

namespace pointloom {
namespace {

using ScoreCommandTest = ProgramTest;

TEST_F(ScoreCommandTest, PrintsTheScoreAfterEachPointOfEachMatch) {
    write(QStringLiteral("p.txt"), "\n" + QByteArray("2\r\n 2 \n").repeated(12) + "\n\n1\n\n");
    const Outcome outcome = run("score --sport tennis --rules \"short-sets, no-ad\" --serving 2 p.txt");
    ASSERT_EQ(outcome.status, 0) << outcome.errText();
    const auto lines = outcome.out.split('\n');
    ASSERT_EQ(lines.size(), 29);
    EXPECT_EQ(lines[0],
              R"({"score":{"type":"tennis","score":{"sets":[{"team1":0,"team2":0}],)"
              R"("currentGame":{"team1":"zero","team2":"zero"},"servingTeam":2}},"label":null,"over":null})");
    EXPECT_TRUE(lines[4].endsWith(R"("servingTeam":1}},"label":null,"over":"game"})"))
        << lines[4].toStdString();
    EXPECT_EQ(
        lines[16],
        R"({"score":{"type":"tennis","score":{"sets":[{"team1":0,"team2":4}],)"
        R"("currentGame":{"team1":"zero","team2":"zero"},"servingTeam":1}},"label":null,"over":"match"})");
    EXPECT_EQ(lines[24], lines[16]) << "points after the end";
    EXPECT_EQ(lines[25], "");
    EXPECT_EQ(lines[26], lines[0]);
    EXPECT_EQ(lines[28], "");
}

TEST_F(ScoreCommandTest, ReadsStandardInput) {
    const Outcome outcome = run("score --sport pickleball --rules doubles");
    EXPECT_EQ(outcome.out.count('\n'), 1);
    EXPECT_EQ(outcome.outJson().at("label"), "Server 2");
}

TEST_F(ScoreCommandTest, NamesTheLinesThatAreNoPoints) {
    write(QStringLiteral("p.txt"), "1\n3\n\n2\none");
    EXPECT_EQ(faultOf("score --sport squash p.txt"), "p.txt: neither 1 nor 2 in line 2, 5");
    EXPECT_EQ(run("score --sport squash p.txt").out, "");
    write(QStringLiteral("q.txt"), QByteArray("x\n").repeated(23));
    EXPECT_TRUE(
        QByteArray::fromStdString(faultOf("score --sport squash q.txt")).endsWith("19, 20 and 3 more"));
    EXPECT_NE(faultOf("score --sport squash none.txt").find("none.txt"), std::string::npos);
}

TEST_F(ScoreCommandTest, ListsTheWordsOfASport) {
    EXPECT_EQ(run("score --list-rules --sport squash").out.count('\n'), 2);
    EXPECT_TRUE(run("score --list-rules").out.contains("deciding=match-tiebreak-10"));
}

}
}
