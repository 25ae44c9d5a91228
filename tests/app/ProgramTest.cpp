// The program itself, started as a desktop starts it.
#include "persistence/ProjectSession.h"
#include "persistence/UserDefaults.h"
#include "support/Sessions.h"
#include "support/TestClips.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

namespace pointloom::test {
namespace {

class ProgramTest : public testing::Test {
protected:
    ProgramTest() {
        for (const char* name : {"config", "data", "runtime"})
            QDir().mkpath(m_folder.path(QString::fromUtf8(name)));
        QFile::setPermissions(m_folder.path(QStringLiteral("runtime")),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.path(QStringLiteral("config")));
        m_environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder.path(QStringLiteral("data")));
        m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path(QStringLiteral("runtime")));
        m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                             QStringLiteral("unix:path=/nowhere"));
    }

    std::unique_ptr<QProcess> start(const QStringList& arguments) {
        auto program = std::make_unique<QProcess>();
        program->setProcessEnvironment(m_environment);
        program->setWorkingDirectory(m_folder.path({}));
        program->start(QStringLiteral(POINTLOOM_PROGRAM), arguments);
        EXPECT_TRUE(program->waitForStarted());
        return program;
    }

    QByteArray recent() const { return m_defaults.data("recentProjects").value_or(QByteArray()); }

    ClipFolder m_folder;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    UserDefaults m_defaults{m_folder.path(QStringLiteral("config/Pointloom/Pointloom.ini"))};
};

// A copy without an address for crash reports asks nothing either: a question would keep the files waiting.
TEST_F(ProgramTest, ASecondStartHandsItsFileToTheFirst) {
    AppState session;
    session.matchConfig = tennisMatch();
    projectFrom(session).save(m_folder.path(QStringLiteral("first.plp")));
    projectFrom(session).save(m_folder.path(QStringLiteral("second.plp")));

    const auto first = start({QStringLiteral("first.plp")}); // relative to where it is started
    ASSERT_TRUE(QTest::qWaitFor([this] { return recent().contains("first.plp"); }, 20000));
    const auto second = start({QStringLiteral("second.plp")});
    ASSERT_TRUE(second->waitForFinished(20000));
    EXPECT_EQ(second->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second->exitCode(), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return recent().contains("second.plp"); }, 20000));
    EXPECT_EQ(first->state(), QProcess::Running);
    first->kill();
    first->waitForFinished();
}

}
}
