#include "Program.h"

namespace pointloom {
namespace {

/// Asks a real bash what it would offer.
class CompletionTest : public ProgramTest {
protected:
    void SetUp() override {
        const Outcome script = run("completion bash");
        ASSERT_EQ(script.status, 0) << script.errText();
        write(QStringLiteral("completion.sh"), script.out);
    }

    /// What is offered for the last of the words.
    QStringList offers(const QStringList& words) const {
        QString wordList;
        for (const QString& word : words)
            wordList += QStringLiteral(" '%1'").arg(word);
        const QString script = QStringLiteral("compopt() { :; }; source completion.sh\n"
                                              "complete -p pointloom-cli >/dev/null || exit 1\n"
                                              "COMP_WORDS=('%1'%2) COMP_CWORD=%3\n"
                                              "_pointloom_cli; printf '%s\\n' \"${COMPREPLY[@]}\"")
                                   .arg(program(), wordList)
                                   .arg(words.size());
        QProcess bash;
        bash.setWorkingDirectory(folder.path());
        bash.start(QStringLiteral("bash"), {QStringLiteral("--norc"), QStringLiteral("-c"), script});
        EXPECT_TRUE(bash.waitForFinished(patience));
        EXPECT_EQ(bash.exitCode(), 0);
        EXPECT_EQ(bash.readAllStandardError(), "");
        return QString::fromUtf8(bash.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    }

    QStringList offers(const char* line) const {
        QStringList words;
        for (const QByteArray& word : QByteArray(line).split(' '))
            words += QString::fromUtf8(word);
        return offers(words);
    }
};

QStringList words(const char* line) {
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

TEST_F(CompletionTest, OffersCommandsOptionsAndTheirValues) {
    EXPECT_EQ(offers("s"), words("segment still scoreboard score"));
    EXPECT_EQ(offers("--v"), words("--version"));
    EXPECT_EQ(offers("export --tr"), words("--trim-start --trim-end"));
    EXPECT_EQ(offers("export m.plp --format "), words("h264 hevc prores png"));
    EXPECT_EQ(offers("export m.plp --watermark-corner b"), words("bottomLeft bottomRight"));
    EXPECT_EQ(offers("export m.plp --format = he"), words("hevc")) << "bash splits at the equals sign";
    EXPECT_EQ(offers("new --template squ"), words("squashCourt squashDark squashNeon squashMinimal"));
    EXPECT_EQ(offers("new --team1 "), QStringList()) << "names cannot be foretold";
    EXPECT_EQ(offers("completion "), words("bash fish zsh"));
}

TEST_F(CompletionTest, OffersFilesOfTheRightKind) {
    for (const char* name : {"our match.plp", "final.MP4", "logo.png", "s.csv"})
        write(QString::fromUtf8(name), "");
    EXPECT_EQ(offers("export "), QStringList{QStringLiteral("our match.plp")});
    EXPECT_EQ(offers("check --json o"), QStringList{QStringLiteral("our match.plp")});
    EXPECT_EQ(offers("export m.plp --video f"), words("final.MP4"));
    EXPECT_EQ(offers("markers "), words("s.csv"));
}

TEST_F(CompletionTest, KnowsExactlyTheOptionsThatHelpShows) {
    for (const char* command : {"export", "still", "scoreboard", "templates", "markers", "new", "check"}) {
        const QByteArray help = run(QStringList{QString::fromLatin1(command), QStringLiteral("--help")}).out;
        const QStringList offered = offers({QString::fromLatin1(command), QStringLiteral("--")});
        EXPECT_FALSE(offered.isEmpty()) << command;
        for (const QString& option : offered)
            EXPECT_TRUE(help.contains(option.toUtf8())) << command << ' ' << option.toStdString();
        EXPECT_FALSE(offered.contains(QStringLiteral("--encoder-preset")));
    }
}

TEST_F(CompletionTest, OffersByThePlaceInTheLine) {
    for (const char* name : {"p.json", "v.mp4"})
        write(QString::fromUtf8(name), "");
    EXPECT_EQ(offers("segment "), words("p.json"));
    EXPECT_EQ(offers("segment p.json "), QStringList()) << "numbers cannot be foretold";
    EXPECT_EQ(offers("export --encoder=v"), words("--encoder=vaapi --encoder=videotoolbox"));
    EXPECT_EQ(offers("licence d"), words("deactivate"));
    EXPECT_EQ(offers("licence import "), words("p.json"));
    EXPECT_EQ(offers("export --help --jobs export --over"), words("--overlay-only"));
    EXPECT_EQ(offers("dance --"), words("--help --version"));
}

// Other shells show descriptions, and the manual is written from the same description of the command line.
TEST_F(CompletionTest, EveryShellAndTheManualNameEveryOption) {
    for (const char* shell : {"bash", "fish", "zsh"}) {
        const QByteArray script =
            run(QStringList{QStringLiteral("completion"), QString::fromLatin1(shell)}).out;
        EXPECT_TRUE(script.contains(" complete -- ")) << shell;
    }
    QByteArray manual = run("manual").out;
    manual.replace("\\-", "-");
    EXPECT_TRUE(manual.startsWith(".TH POINTLOOM-CLI 1"));
    for (const char* command : {"export", "still", "scoreboard", "templates", "markers", "new", "check"}) {
        const QByteArray offered = run(QStringList{QStringLiteral("complete"), QStringLiteral("--"),
                                                   QString::fromLatin1(command), QStringLiteral("--")})
                                       .out;
        for (const QString& option : offers({QString::fromLatin1(command), QStringLiteral("--")})) {
            const QByteArray name = option.toUtf8();
            EXPECT_TRUE(offered.contains(name + '\t')) << command << ' ' << name.constData();
            EXPECT_TRUE(manual.contains(name)) << command << ' ' << name.constData();
        }
    }
    EXPECT_FALSE(manual.contains("encoder-preset") || manual.contains("complete "));
    EXPECT_FALSE(run("--help").out.contains("complete "));
}

}
}
