#include "Program.h"

namespace pointloom {
namespace {

using UsageTest = ProgramTest;

TEST_F(UsageTest, HelpAndVersionAreNoFaults) {
    const Outcome version = run("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(version.out.startsWith("pointloom-cli "));
    for (const char* command : {"export", "plan", "segment", "join", "still", "scoreboard", "templates",
                                "markers", "score", "new", "check", "licence", "completion"}) {
        const Outcome help = run(QStringList{QString::fromLatin1(command), QStringLiteral("--help")});
        EXPECT_EQ(help.status, 0) << command;
        EXPECT_TRUE(help.err.isEmpty()) << help.errText();
        EXPECT_TRUE(help.out.contains("Example:\n  ")) << help.out.toStdString();
        EXPECT_FALSE(help.out.contains("--encoder-preset"));
        EXPECT_TRUE(run("--help").out.contains(command));
    }
}

TEST_F(UsageTest, WrongArgumentsEndWithStatusTwo) {
    ASSERT_EQ(run(newTennis).status, 0);
    for (const char* arguments : {"",
                                  "dance",
                                  "export",
                                  "export m.plp --format mpeg2",
                                  "export m.plp --preset 8k",
                                  "export m.plp --watermark-corner middle",
                                  "export m.plp --progress loud",
                                  "export m.plp --trim-start x",
                                  "export m.plp --trim-start -1",
                                  "export m.plp --trim-end nan",
                                  "export m.plp --trim-end inf",
                                  "export m.plp --trim-end 0x10",
                                  "export m.plp --trim-start 5 --trim-end 5",
                                  "export m.plp --licensed",
                                  "export m.plp extra",
                                  "still m.plp -o a.png",
                                  "still m.plp --at 1",
                                  "still m.plp --at 1 -o a.jpg",
                                  "scoreboard m.plp --template golf -o a.png",
                                  "scoreboard m.plp --scale 0 -o a.png",
                                  "scoreboard m.plp --scale 1e9 -o a.png",
                                  "templates --sport golf",
                                  "markers",
                                  "markers --sample a.csv",
                                  "score",
                                  "score --sport tennis --sets 2",
                                  "score --sport tennis --rules fast4,pro-set-8",
                                  "score --sport squash --rules beach",
                                  "score --sport squash --serving 3",
                                  "completion tcsh",
                                  "check"})
        EXPECT_NE(faultOf(arguments, 2), "") << arguments;
    EXPECT_EQ(faultOf("export m.plp --format mpeg2", 2), "export: --format: \"mpeg2\" is none of h264, hevc, "
                                                         "prores, png (see \"pointloom-cli export --help\")");
}

TEST_F(UsageTest, FaultsOfFilesEndWithStatusOneAndNameTheFile) {
    EXPECT_EQ(faultOf("export none.plp"), "none.plp: no such file");
    EXPECT_EQ(faultOf("check ."), ".: is a folder, not a file");
    write(QStringLiteral("bad.plp"), "{\n]");
    EXPECT_EQ(faultOf("check bad.plp").find("bad.plp: line 2, column 1: not valid JSON: "), 0U);
    write(QStringLiteral("golf.plp"),
          R"({"version":1,"scoreboardPositionX":0,"scoreboardPositionY":0,"trimStart":0,"markers":[)"
          R"({"id":"11111111-2222-3333-4444-555555555555","startTime":1,"score":{"type":"golf"}}]})");
    EXPECT_EQ(faultOf("scoreboard golf.plp -o a.png"),
              "golf.plp: markers[0].score.type: unknown value \"golf\"");
    EXPECT_FALSE(exists(QStringLiteral("a.png")));
    EXPECT_EQ(faultOf("markers /dev/zero"), "zero: is not a regular file");
}

TEST_F(UsageTest, SurroundingsDoNotChangeWhatIsSaid) {
    QProcess process;
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process.setProcessEnvironment(environment);
    process.start(program(),
                  {QStringLiteral("templates"), QStringLiteral("--sport"), QStringLiteral("tennis")});
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.readAllStandardError(), "");
    EXPECT_TRUE(process.readAllStandardOutput().contains("Dark navy, clay-orange \u2014 Roland Garros feel"));
}

TEST_F(UsageTest, OutputThatDoesNotArriveIsAFault) {
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(program(), {QStringLiteral("templates")});
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(process.readAllStandardError(), "pointloom-cli: cannot write to standard output\n");
}

}
}
