#include "persistence/InstanceChannel.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <thread>

namespace pointloom {
namespace {

TEST(SessionLock, OneHolderAtATime) {
    const QTemporaryDir folder;
    auto first = SessionLock::tryAcquire(folder.filePath(QStringLiteral("new/folder")));
    ASSERT_TRUE(first);
    EXPECT_FALSE(SessionLock::tryAcquire(first->folder()));
    const QTemporaryDir other;
    EXPECT_TRUE(SessionLock::tryAcquire(other.path())) << "another user's session is another lock";

    SessionLock moved = std::move(*first);
    EXPECT_FALSE(SessionLock::tryAcquire(moved.folder()));
    const QString path = moved.folder();
    { const SessionLock last = std::move(moved); }
    EXPECT_TRUE(SessionLock::tryAcquire(path));
}

TEST(SessionLock, AStartWaitsForTheInstanceThatIsEnding) {
    const QTemporaryDir folder;
    auto ending = SessionLock::tryAcquire(folder.path());
    std::thread end([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        ending.reset();
    });
    EXPECT_TRUE(SessionLock::acquireWithin(folder.path(), std::chrono::seconds(20)));
    end.join();
}

TEST(InstanceChannel, ASecondStartHandsItsArgumentsToTheFirst) {
    const QTemporaryDir folder;
    const auto lock = SessionLock::tryAcquire(folder.path());
    ASSERT_TRUE(lock);
    const QStringList arguments{QStringLiteral("/videos/Finale d’été.plp"), QString(),
                                QStringLiteral("two\nlines \"quoted\"")};
    std::vector<QStringList> received;
    std::atomic<int> accepted = 0;
    // The second start is sooner than the first is ready.
    std::thread second([&] {
        for (int start = 0; start < 2; ++start)
            accepted += handOver(folder.path(), arguments, std::chrono::seconds(20)) ? 1 : 0;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const InstanceServer server(*lock, [&](const QStringList& list) { received.push_back(list); });
    QElapsedTimer waited;
    waited.start();
    while ((accepted < 2 || received.size() < 2) && waited.elapsed() < 20'000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    second.join();
    EXPECT_EQ(accepted, 2);
    EXPECT_EQ(received, (std::vector{arguments, arguments}));
}

TEST(InstanceChannel, NobodyThereIsSaidInTime) {
    const QTemporaryDir folder;
    EXPECT_FALSE(handOver(folder.path(), {QStringLiteral("a")}, std::chrono::milliseconds(100)));
}

}
}
