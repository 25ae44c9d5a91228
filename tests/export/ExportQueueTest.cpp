// The queue of exports: order, faults, pauses, and what a next start finds.
#include "export/ExportQueue.h"

#include "support/TestClips.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <thread>

namespace pointloom {
namespace {

// Exports nothing: remembers the names of the new files.
class ExportQueueTest : public testing::Test {
protected:
    static constexpr std::int64_t plenty = 1'000'000'000;

    ExportQueue makeQueue(const QString& keptIn = {}) {
        return ExportQueue({.work = [this](const ExportJob& job,
                                           const ExportControl& control) { return work(job, control); },
                            .freeBytes = [this](const QString&) { return free.load(); },
                            .words = {},
                            .onChange = {}},
                           keptIn);
    }

    QueuedExport entry(const char* name) const {
        QueuedExport entry{.name = QString::fromUtf8(name), .work = 100};
        entry.job.videoPath = folder.path(QStringLiteral("match-%1.mp4").arg(entry.name));
        entry.job.outputPath = folder.path(entry.name + QStringLiteral(".mp4"));
        return entry;
    }

    QUuid add(ExportQueue& queue, const char* name) {
        const QueuedExport added = entry(name);
        queue.add(added);
        return added.id;
    }

    // The names of the new files in their order.
    std::string runAll(ExportQueue& queue) {
        exported.clear();
        while (queue.runNext())
            continue;
        return exported.join(u' ').toStdString();
    }

    ExportReport work(const ExportJob& job, const ExportControl& control) {
        control.onProgress({0.5, 50, 100});
        if (atHalf)
            atHalf();
        control.throwIfCancelled();
        const QString name = QFileInfo(job.outputPath).baseName();
        if (name == faulty)
            throw ExportError::exportFailed(QStringLiteral("match-%1.mp4 is gone").arg(name));
        exported << name;
        return {.damage = {}, .outputPath = job.outputPath};
    }

    test::ClipFolder folder;
    QString file = folder.path(QStringLiteral("data/exports.json"));
    QString faulty;
    std::function<void()> atHalf;
    std::atomic<std::int64_t> free = plenty;
    QStringList exported;
};

QList<QueueState> statesOf(const ExportQueue& queue) {
    QList<QueueState> states;
    for (const QueuedExport& entry : queue.entries())
        states << entry.state;
    return states;
}

TEST_F(ExportQueueTest, RunsInTheOrderThatTheUserGivesIt) {
    ExportQueue queue = makeQueue();
    add(queue, "a");
    const QUuid b = add(queue, "b");
    const QUuid c = add(queue, "c");
    const QUuid d = add(queue, "d");
    queue.move(d, true);  // a b d c
    queue.move(b, true);  // b a d c
    queue.move(b, true);  // it is the first already
    queue.move(c, false); // it is the last already
    EXPECT_EQ(runAll(queue), "b a d c");
    EXPECT_EQ(queue.status().done, 4);
    queue.removeEnded();
    EXPECT_TRUE(queue.entries().empty());
}

TEST_F(ExportQueueTest, AFailureStopsNoOtherAndCanBeTriedAgain) {
    ExportQueue queue = makeQueue();
    faulty = QStringLiteral("a");
    const QUuid a = add(queue, "a");
    add(queue, "b");
    EXPECT_EQ(runAll(queue), "b");
    EXPECT_EQ(queue.entry(a)->state, QueueState::failed);
    EXPECT_EQ(queue.entry(a)->message, QStringLiteral("Export failed: match-a.mp4 is gone"));
    faulty.clear();
    add(queue, "c");
    queue.retry(a);
    EXPECT_EQ(runAll(queue), "c a");
}

TEST_F(ExportQueueTest, CancellingEndsTheOneThatRunsAndSkipsTheOneThatWaits) {
    ExportQueue queue = makeQueue();
    const QUuid a = add(queue, "a");
    const QUuid b = add(queue, "b");
    const QUuid c = add(queue, "c");
    queue.cancel(b);
    atHalf = [&] {
        queue.remove(a); // it runs
        queue.cancel(a);
        atHalf = nullptr;
    };
    EXPECT_EQ(runAll(queue), "c");
    EXPECT_EQ(statesOf(queue), (QList{QueueState::cancelled, QueueState::cancelled, QueueState::done}));
    queue.remove(c);
    queue.retry(a);
    EXPECT_EQ(runAll(queue), "a");
}

TEST_F(ExportQueueTest, APauseHoldsTheExportThatRunsWithoutCountingItsTime) {
    ExportQueue queue = makeQueue();
    add(queue, "a");
    std::atomic<bool> isPaused = false;
    atHalf = [&] {
        queue.pause();
        isPaused = true;
    };
    std::thread worker([&] { queue.runNext(); });
    while (!isPaused)
        std::this_thread::yield();
    const double elapsed = queue.status().elapsed;
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(queue.status().elapsed, elapsed);
    EXPECT_EQ(statesOf(queue), QList{QueueState::running});
    queue.resume();
    worker.join();
    EXPECT_EQ(exported.join(u' ').toStdString(), "a");
}

TEST_F(ExportQueueTest, PausesWhileTheDiskIsNearlyFullUntilThereIsSpaceOrItIsTold) {
    for (const bool isTold : {false, true}) {
        ExportQueue queue = makeQueue();
        exported.clear();
        free = 10'000'000;
        add(queue, "a");
        std::thread worker([&] { queue.runNext(); });
        while (!queue.status().lowSpace)
            std::this_thread::yield();
        EXPECT_EQ(queue.status().lowSpace, 10'000'000);
        EXPECT_EQ(exported, QStringList());
        if (isTold)
            queue.resume();
        else
            free = plenty;
        worker.join();
        EXPECT_EQ(exported.join(u' ').toStdString(), "a");
    }
}

TEST_F(ExportQueueTest, TheNextStartGoesOnWithWhatWasLeft) {
    faulty = QStringLiteral("b");
    {
        ExportQueue queue = makeQueue(file);
        QueuedExport first = entry("a");
        first.job.ifExists = IfExists::addNumber;
        first.job.trimEnd = 3.7;
        first.job.projectPath = folder.path(QStringLiteral("a.plp"));
        first.job.overlay.config.team1.player1 = QStringLiteral("Ōtsuka \"Ω\"");
        queue.add(first);
        add(queue, "b");
        add(queue, "c");
        add(queue, "d");
        queue.move(queue.entries()[1].id, true); // b a c d
        queue.cancel(queue.entries()[3].id);
        queue.runNext();
        atHalf = [&] { queue.stop(); };
        EXPECT_EQ(queue.runNext()->state, QueueState::waiting);
        EXPECT_FALSE(queue.runNext()) << "stopped";
        queue.pause();
    }
    atHalf = nullptr;
    ExportQueue queue = makeQueue(file);
    EXPECT_FALSE(queue.restore());
    EXPECT_TRUE(queue.status().isPaused);
    EXPECT_EQ(statesOf(queue), (QList{QueueState::failed, QueueState::waiting, QueueState::waiting}));
    EXPECT_EQ(queue.entries()[0].message, QStringLiteral("Export failed: match-b.mp4 is gone"));
    ExportJob expected = entry("a").job;
    expected.ifExists = IfExists::addNumber;
    expected.trimEnd = 3.7;
    expected.projectPath = folder.path(QStringLiteral("a.plp"));
    expected.overlay.config.team1.player1 = QStringLiteral("Ōtsuka \"Ω\"");
    EXPECT_TRUE(queue.entries()[1].job == expected);
    queue.resume();
    EXPECT_EQ(runAll(queue), "a c");
}

// As after a kill: the file is that of a queue whose export runs.
TEST_F(ExportQueueTest, AnExportDuringWhichTheProgramDiesAgainAndAgainIsNotStartedForEver) {
    QUuid id;
    int starts = 0;
    {
        ExportQueue queue = makeQueue(file);
        id = add(queue, "a");
    }
    for (; starts < 10; ++starts) {
        ExportQueue queue = makeQueue(file);
        EXPECT_FALSE(queue.restore());
        if (queue.entry(id)->state == QueueState::failed)
            break;
        QByteArray atDeath;
        atHalf = [&] { atDeath = test::readFile(file); };
        queue.runNext();
        folder.write(QStringLiteral("data/exports.json"), atDeath);
    }
    EXPECT_EQ(starts, 3);
    ExportQueue queue = makeQueue(file);
    EXPECT_FALSE(queue.restore());
    atHalf = nullptr;
    queue.retry(id);
    EXPECT_EQ(runAll(queue), "a");
}

TEST_F(ExportQueueTest, ADamagedFileIsSetAsideWithTheReason) {
    ASSERT_TRUE(QDir(folder.path({})).mkpath(QStringLiteral("data")));
    for (const char* place : {"data/exports-damaged.json", "data/exports-damaged-2.json"}) {
        folder.write(QStringLiteral("data/exports.json"), R"({"paused": false, "exports": [{"id": 7}]})");
        ExportQueue queue = makeQueue(file);
        const auto damage = queue.restore();
        ASSERT_TRUE(damage);
        EXPECT_TRUE(damage->reason.contains(QStringLiteral("exports[0]"))) << damage->reason.toStdString();
        EXPECT_EQ(damage->setAside, folder.path(QString::fromUtf8(place)));
        EXPECT_TRUE(test::readFile(damage->setAside).contains("\"id\": 7"));
        add(queue, "a");
        EXPECT_TRUE(queue.isKept());
        EXPECT_TRUE(test::readFile(file).contains("match-a.mp4"));
    }
}

TEST_F(ExportQueueTest, WhatCannotBeKeptIsTold) {
    folder.write(QStringLiteral("data"), "a file where the folder should be");
    ExportQueue queue = makeQueue(file);
    add(queue, "a");
    EXPECT_FALSE(queue.isKept());
    EXPECT_TRUE(queue.faultOfFile().contains(file)) << queue.faultOfFile().toStdString();
    EXPECT_EQ(runAll(queue), "a");
}

TEST_F(ExportQueueTest, NoExportReplacesTheResultOrTheVideoOfAnother) {
    ExportQueue queue = makeQueue();
    folder.write(QStringLiteral("match-b.mp4"), "a video");
    QueuedExport over = entry("a");
    over.job.outputPath = folder.path(QStringLiteral("match-b.mp4"));
    queue.add(over);
    add(queue, "b");
    const QUuid again = add(queue, "b");
    EXPECT_EQ(queue.entry(again)->job.ifExists, IfExists::addNumber);
    EXPECT_EQ(runAll(queue), "b b");
    EXPECT_TRUE(queue.entry(over.id)->message.contains(QStringLiteral("replace the source video")))
        << queue.entry(over.id)->message.toStdString();
}

// Half of the first of 100 units took a time; the rest of it and 300 units more take seven times that.
TEST_F(ExportQueueTest, TheTimeLeftIsThatOfAllExports) {
    ExportQueue queue = makeQueue();
    add(queue, "a");
    QueuedExport longer = entry("b");
    longer.work = 300;
    queue.add(longer);
    std::optional<QueueStatus> atHalfOfFirst;
    atHalf = [&] {
        while (queue.status().elapsed < 0.05)
            std::this_thread::yield();
        queue.pause(); // so that both are of one moment
        atHalfOfFirst = queue.status();
        queue.resume();
        atHalf = nullptr;
    };
    runAll(queue);
    ASSERT_TRUE(atHalfOfFirst && atHalfOfFirst->secondsLeft);
    EXPECT_NEAR(*atHalfOfFirst->secondsLeft, 7 * atHalfOfFirst->elapsed, 1e-6);
    EXPECT_DOUBLE_EQ(atHalfOfFirst->fraction, 50.0 / 400);
    EXPECT_EQ(atHalfOfFirst->left, 2);
}

}
}
