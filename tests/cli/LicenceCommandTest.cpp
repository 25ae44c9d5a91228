#include "Program.h"

#include <gmock/gmock.h>
#include <QSysInfo>

namespace pointloom {
namespace {

using testing::HasSubstr;

// The program under test is in the build folder, whose Info.json names no licence service.
class LicenceCommandTest : public ProgramTest {
protected:
    void SetUp() override {
        // Neither the user's licence nor their keychain.
        qputenv("XDG_DATA_HOME", folder.path().toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    }
    void TearDown() override {
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }
};

TEST_F(LicenceCommandTest, AMachineWithoutALicenceSaysSo) {
    const Outcome words = run("licence status");
    EXPECT_EQ(words.status, 0) << words.errText();
    EXPECT_EQ(words.out, "This copy is not licensed. Exported videos carry a licence watermark.\n");
    EXPECT_EQ(run("licence status --json").outJson().at("state"), "unlicensed");
    EXPECT_EQ(faultOf("licence deactivate"), "This machine has no licence to give back.");
}

TEST_F(LicenceCommandTest, FaultsAreOneLine) {
    EXPECT_THAT(faultOf("licence activate PL-123", 2), HasSubstr("and this one has 3"));
    EXPECT_NE(faultOf("licence", 2), "");
    EXPECT_NE(faultOf("licence request r.json", 2), "");
    EXPECT_THAT(faultOf("licence activate PL-00000-00000-00000-00000"), HasSubstr("names no seller"));
    EXPECT_THAT(faultOf("licence import none.json"), HasSubstr("none.json"));
}

TEST_F(LicenceCommandTest, ARequestIsWrittenWithoutANetwork) {
    const Outcome outcome = run("licence request r.json --key pl000000000000000000-00");
    if (QSysInfo::machineUniqueId().isEmpty()) { // as in many containers
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.err.contains("no machine identity")) << outcome.errText();
        return;
    }
    EXPECT_EQ(outcome.status, 0) << outcome.errText();
    QFile file(path(QStringLiteral("r.json")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto request = json::Value::parse(file.readAll().toStdString());
    EXPECT_EQ(request.at("key"), "PL-00000-00000-00000-00000");
    EXPECT_EQ(request.at("format"), "pointloom-licence-request-1");
}

TEST_F(LicenceCommandTest, AKeyOnStandardInputIsNotAmongTheArguments) {
    write(QStringLiteral("key.txt"), "PL-123\nPL-1234\n");
    QProcess process;
    process.setStandardInputFile(path(QStringLiteral("key.txt")));
    process.start(program(), {QStringLiteral("licence"), QStringLiteral("activate"), QStringLiteral("-")});
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_THAT(process.readAllStandardError().toStdString(), HasSubstr("and this one has 3"));
    EXPECT_THAT(faultOf("licence request r.json --key -", 2), HasSubstr("Enter the licence key"));
}

}
}
