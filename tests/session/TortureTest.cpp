// Kills processes while they save, fills the disk and takes the right to write away. A short form runs with
// all tests; scripts/torture.sh sets POINTLOOM_TORTURE_KILLS for the long one.
#include "persistence/Persistence.h"
#include "session/RandomEdits.h"
#include "json/JsonDocument.h"

#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace pointloom {
namespace {

constexpr int patience = 60'000; // milliseconds for a process on a busy machine

QByteArray sessionText(const AppState& state) {
    return json::write(Persistence::Snapshot::of(state));
}

/// The same edits in this process, without any storing: what a fresh start ought to find.
class Twin {
public:
    void start() { m_undo = std::make_unique<UndoStack>(); }
    void advance() { test::makeEdit(m_state, *m_undo, ++m_number); }

    std::uint64_t number() const { return m_number; } // of the last edit
    QByteArray text() const { return sessionText(m_state); }

private:
    AppState m_state;
    std::unique_ptr<UndoStack> m_undo = std::make_unique<UndoStack>();
    std::uint64_t m_number = 0;
};

class Torture : public testing::Test {
protected:
    QTemporaryDir temporary;
    QString folder = temporary.filePath(QStringLiteral("session"));

    void SetUp() override { QDir().mkpath(folder); }

    std::unique_ptr<QProcess> startEditing(std::uint64_t first, std::uint64_t count, bool asNobody = false) {
        auto child = std::make_unique<QProcess>();
        if (asNobody) {
            auto environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("POINTLOOM_TORTURE_AS_NOBODY"), QStringLiteral("1"));
            child->setProcessEnvironment(environment);
        }
        child->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child->start(program(),
                     {QStringLiteral("edit"), folder, QString::number(first), QString::number(count)});
        EXPECT_TRUE(child->waitForStarted(patience));
        return child;
    }

    /// Edits to the end, without a kill. Returns how many it reported.
    qsizetype edit(std::uint64_t first, std::uint64_t count, bool asNobody = false) {
        const auto child = startEditing(first, count, asNobody);
        EXPECT_TRUE(child->waitForFinished(patience));
        EXPECT_EQ(child->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(child->exitCode(), 0);
        return child->readAllStandardOutput().count('\n');
    }

    QByteArray shownByAFreshProcess() {
        QProcess child;
        child.start(program(), {QStringLiteral("show"), folder});
        EXPECT_TRUE(child.waitForFinished(patience));
        EXPECT_EQ(child.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(child.exitCode(), 0);
        return child.readAllStandardOutput().trimmed();
    }

    static QString program() { return QStringLiteral(POINTLOOM_TORTURE_CHILD); }
};

std::uint64_t lastSaved(const QByteArray& output, std::uint64_t before) {
    const auto lines = output.split('\n');
    for (qsizetype i = lines.size() - 2; i >= 0; --i) // the last is empty, or was cut by the kill
        return lines[i].mid(6).toULongLong();
    return before;
}

TEST_F(Torture, AKilledProcessLeavesItsLastSavedEditOrTheOneAfter) {
    const int kills = std::max(1, qEnvironmentVariableIntValue("POINTLOOM_TORTURE_KILLS"));
    const int rounds = qEnvironmentVariableIsSet("POINTLOOM_TORTURE_KILLS") ? kills : 25;
    std::mt19937 random(static_cast<unsigned>(::getpid()));
    Twin twin;
    int atLast = 0;
    int atNext = 0;
    for (int round = 0; round < rounds; ++round) {
        twin.start();
        const auto child = startEditing(twin.number() + 1, 1'000'000);
        // Most kills fall among the saves, some into starting and loading.
        if (random() % 10 != 0)
            child->waitForReadyRead(patience);
        constexpr unsigned longestLife = 20'000; // microseconds
        QThread::usleep(random() % longestLife);
        child->kill();
        ASSERT_TRUE(child->waitForFinished(patience));
        ASSERT_EQ(child->exitStatus(), QProcess::CrashExit) << child->exitCode();

        for (const auto saved = lastSaved(child->readAllStandardOutput(), twin.number());
             twin.number() < saved;)
            twin.advance();
        const QByteArray found = shownByAFreshProcess();
        // Nothing is stored before the first edit: a fresh session then.
        if (found == twin.text()) {
            ++atLast;
        } else {
            twin.advance();
            ASSERT_EQ(found, twin.text()) << "after kill " << round << ", edit " << twin.number();
            ++atNext;
        }
    }
    std::printf("%d kills over %llu edits: %d found the last saved edit, %d the one after\n", rounds,
                static_cast<unsigned long long>(twin.number()), atLast, atNext);
    QStringList leftovers = QDir(folder).entryList(QDir::Files);
    leftovers.removeAll(QStringLiteral("Pointloom.ini.new")); // of the last kill; the next save takes it over
    EXPECT_EQ(leftovers, (QStringList{QStringLiteral("Pointloom.ini"), QStringLiteral("Pointloom.lock")}));
}

/// A small disk of its own, as long as it lives; only root can have one.
class SmallDisk {
public:
    explicit SmallDisk(const QString& place)
        : m_place(QFile::encodeName(place))
        , m_isMounted(::mount("tmpfs", m_place.constData(), "tmpfs", 0, "size=32k") == 0) {}
    ~SmallDisk() {
        if (m_isMounted)
            ::umount(m_place.constData());
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isMounted() const { return m_isMounted; }
    bool remount(unsigned long flags, const char* options) {
        return ::mount("tmpfs", m_place.constData(), "tmpfs", MS_REMOUNT | flags, options) == 0;
    }

private:
    QByteArray m_place;
    bool m_isMounted;
};

/// The texts of the first `count` edits, each with its number; 0 is the fresh session.
std::map<QByteArray, std::uint64_t> textsOfEdits(std::uint64_t count) {
    Twin twin;
    std::map<QByteArray, std::uint64_t> texts{{twin.text(), 0}};
    while (twin.number() < count) {
        twin.advance();
        texts[twin.text()] = twin.number();
    }
    return texts;
}

TEST_F(Torture, AFullDiskKeepsTheLastSessionThatFitted) {
    SmallDisk disk(folder);
    if (!disk.isMounted())
        GTEST_SKIP() << "needs the right to mount; the limit on file size stands in for it below";
    constexpr std::uint64_t edits = 600;
    EXPECT_EQ(edit(1, edits), edits) << "the session goes on";
    const auto texts = textsOfEdits(edits);
    const auto found = texts.find(shownByAFreshProcess());
    ASSERT_NE(found, texts.end()) << "a session that never was";
    EXPECT_GT(found->second, 5U);
    EXPECT_LT(found->second, edits) << "the disk did not fill";
    std::printf("full disk: %llu edits, edit %llu kept\n", static_cast<unsigned long long>(edits),
                static_cast<unsigned long long>(found->second));

    ASSERT_TRUE(disk.remount(0, "size=4m"));
    edit(1000, 1);
    EXPECT_FALSE(texts.contains(shownByAFreshProcess())) << "with room again the next edit is stored";

    ASSERT_TRUE(disk.remount(MS_RDONLY, "size=4m"));
    const QByteArray before = shownByAFreshProcess();
    EXPECT_EQ(edit(2000, 20), 20);
    EXPECT_EQ(shownByAFreshProcess(), before) << "a disk that became read-only loses nothing";
}

TEST_F(Torture, AFolderWithoutTheRightToWriteLosesNothing) {
    edit(1, 50);
    const QByteArray before = shownByAFreshProcess();
    // The way to the folder is open to everyone, the settings readable.
    const auto open =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    ASSERT_TRUE(QFile::setPermissions(temporary.path(), open));
    ASSERT_TRUE(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther |
                                                  QFile::ExeOther));
    for (const char* file : {"Pointloom.ini", "Pointloom.lock"})
        QFile::setPermissions(folder + u'/' + QString::fromLatin1(file), QFile::ReadOwner | QFile::ReadOther);
    EXPECT_EQ(edit(51, 30, true), 30);
    EXPECT_EQ(shownByAFreshProcess(), before);
    QFile::setPermissions(folder, open);
}

TEST_F(Torture, ALimitOnFileSizeKeepsTheLastSessionAndTheNextSaveCatchesUp) {
    UserDefaults defaults(folder + QStringLiteral("/Pointloom.ini"));
    const auto lock = SessionLock::tryAcquire(folder);
    Persistence persistence(defaults, *lock);
    AppState state(&persistence);
    UndoStack undo;
    for (std::uint64_t number = 1; number <= 20; ++number)
        test::makeEdit(state, undo, number);
    const QByteArray before = sessionText(state);

    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit tight{512, limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    for (std::uint64_t number = 21; number <= 30; ++number)
        test::makeEdit(state, undo, number);
    const auto kept = defaults.data(Persistence::sessionKey);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, previousHandler);
    EXPECT_EQ(kept, before);
    EXPECT_FALSE(QFile::exists(defaults.path() + QStringLiteral(".new"))) << "half a file takes room";

    test::makeEdit(state, undo, 31);
    EXPECT_EQ(defaults.data(Persistence::sessionKey), sessionText(state));
}

}
}
