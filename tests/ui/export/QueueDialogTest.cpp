// The list of the queue and its indicator, operated by clicks, over exports that end when the test says so.
#include "ui/export/QueueDialog.h"

#include "ExportScreen.h"
#include "ui/export/ExportWords.h"
#include "ui/export/QueueIndicator.h"

#include <algorithm>

namespace pointloom {

namespace {

using test::longest;
using test::named;

class QueueDialogTest : public testing::Test {
protected:
    QueueDialogTest() { screen.state.language = Language::english; }

    QUuid add(const char* name) {
        QueuedExport entry{.name = QString::fromUtf8(name)};
        entry.job.videoPath = clips.path(entry.name + QStringLiteral(".mov"));
        entry.job.outputPath = clips.path(entry.name + QStringLiteral(".mp4"));
        entry.job.overlay.isLicensed = true; // when it was added, in this or another run
        runner.add(entry);
        return entry.id;
    }

    ExportReport work(const ExportJob& job, const ExportControl& control) {
        control.onProgress({0.25, 100, 400});
        isMarked = !job.overlay.isLicensed;
        while (!isReleased)
            control.throwIfCancelled();
        control.throwIfCancelled(); // waits, or ends, as was asked before the release
        if (!QFile::exists(job.videoPath))
            throw ExportError::noVideoTrack();
        return {.damage = {}, .outputPath = job.outputPath};
    }

    bool starts() {
        return QTest::qWaitFor([&] { return runner.queue().status().progress.frames > 0; }, longest);
    }

    // The list from the top: names, states and what is said of them.
    static QStringList listed(const QueueDialog& dialog) {
        auto rows = dialog.findChildren<QueueRow*>();
        std::ranges::sort(rows, {}, &QWidget::y);
        QStringList lines;
        for (QueueRow* row : rows)
            lines << row->accessibleName() + QStringLiteral(": ") + named<QLabel>(*row, "detail")->text();
        return lines;
    }

    QueueRow& row(QueueDialog& dialog, const char* name) {
        for (QueueRow* row : dialog.findChildren<QueueRow*>()) {
            if (row->accessibleName() == QString::fromUtf8(name))
                return *row;
        }
        throw std::runtime_error(std::string("not listed: ") + name);
    }

    bool becomes(const QueueDialog& dialog, const QStringList& lines) {
        return QTest::qWaitFor([&] { return listed(dialog) == lines; }, longest);
    }

    test::ScreenContext screen;
    test::ClipFolder clips;
    std::atomic<bool> isReleased = false;
    std::atomic<bool> isMarked = false;
    ExportRunner runner{screen.state, {}, [this](const ExportJob& job, const ExportControl& control) {
                            return work(job, control);
                        }};
};

TEST_F(QueueDialogTest, ListsExportsAndChangesTheirOrder) {
    add("Ana");
    add("Bea");
    add("Cleo");
    QueueDialog dialog(screen.context, runner, nullptr);
    test::show(dialog);
    ASSERT_TRUE(starts());
    QCoreApplication::processEvents();
    EXPECT_TRUE(listed(dialog).value(0).startsWith(QStringLiteral("Ana: 100 of 400 frames")))
        << listed(dialog).value(0).toStdString();
    EXPECT_FALSE(named<QWidget>(row(dialog, "Ana"), "moveUp")->isVisible());
    EXPECT_FALSE(named<QWidget>(row(dialog, "Bea"), "moveUp")->isEnabled());
    test::click(row(dialog, "Cleo"), "moveUp");
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            return listed(dialog).mid(1) ==
                   QStringList{QStringLiteral("Cleo: Waiting"), QStringLiteral("Bea: Waiting")};
        },
        longest));
}

TEST_F(QueueDialogTest, CancelsTriesAgainAndRemoves) {
    add("Ana");
    add("Bea");
    clips.write(QStringLiteral("Ana.mov"), "a video");
    QueueDialog dialog(screen.context, runner, nullptr);
    test::show(dialog);
    ASSERT_TRUE(starts());
    test::click(row(dialog, "Ana"), "remove");
    isReleased = true;
    ASSERT_TRUE(becomes(dialog, {QStringLiteral("Ana: Cancelled"),
                                 QStringLiteral("Bea: The video “Bea.mov” is no longer there. Put it back "
                                                "where it was, or choose another video.")}));
    EXPECT_EQ(named<QLabel>(dialog, "summary")->text(), QStringLiteral("Exports failed: 1"));
    test::click(row(dialog, "Ana"), "retry");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return listed(dialog).value(1) == QStringLiteral("Ana: Finished"); }, longest));
    test::click(row(dialog, "Bea"), "remove");
    ASSERT_TRUE(becomes(dialog, {QStringLiteral("Ana: Finished")}));
    test::click(dialog, "removeEnded");
    ASSERT_TRUE(becomes(dialog, {}));
    EXPECT_TRUE(named<QLabel>(dialog, "summary")
                    ->text()
                    .startsWith(QStringLiteral("What you export is listed here.")));
}

TEST_F(QueueDialogTest, PausesAndGoesOnInEveryLanguage) {
    add("Ana");
    clips.write(QStringLiteral("Ana.mov"), "a video");
    QueueIndicator indicator(screen.context, runner, nullptr);
    QueueDialog dialog(screen.context, runner, nullptr);
    test::show(dialog);
    screen.state.language = Language::german;
    ASSERT_TRUE(starts());
    test::click(dialog, "pause");
    isReleased = true;
    EXPECT_TRUE(becomes(dialog, {QStringLiteral("Ana: Angehalten")}));
    EXPECT_EQ(indicator.toolTip(), QStringLiteral("Ausstehende Exporte: 1, Angehalten"));
    EXPECT_EQ(named<QPushButton>(dialog, "pause")->text(), QStringLiteral("Fortsetzen"));
    test::click(dialog, "pause");
    EXPECT_TRUE(becomes(dialog, {QStringLiteral("Ana: Fertig")}));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return indicator.toolTip() == QStringLiteral("Exporte fertig"); }, longest));
}

TEST_F(QueueDialogTest, AnExportIsMarkedAsTheLicenceSaysWhenItStarts) {
    isReleased = true;
    for (const bool isLicensed : {false, true}) {
        screen.state.isLicensed = isLicensed;
        const QUuid id = add("Ana");
        ASSERT_TRUE(QTest::qWaitFor([&] { return !runner.queue().entry(id)->isLeft(); }, longest));
        EXPECT_EQ(isMarked, !isLicensed);
    }
}

TEST(QueueWords, SayWhatIsLeftAndWhenItIsDone) {
    const QDateTime now(QDate(2026, 3, 7), QTime(18, 4, 59));
    const auto words = [&](const QueueStatus& status) {
        return ExportWords::queue(status, now, Language::german).toStdString();
    };
    EXPECT_EQ(words({.left = 2, .elapsed = 60, .secondsLeft = 2100}),
              "Ausstehende Exporte: 2, fertig gegen 18:39");
    EXPECT_EQ(words({.left = 2, .elapsed = 1, .secondsLeft = 2100}), "Ausstehende Exporte: 2") << "too early";
    EXPECT_EQ(words({.left = 1, .failed = 2}), "Ausstehende Exporte: 1, Fehlgeschlagene Exporte: 2");
    EXPECT_EQ(words({.left = 1, .lowSpace = 12'000'000}),
              "Angehalten, der Datenträger ist fast voll: 12 MB frei");
    EXPECT_EQ(words({.done = 1, .cancelled = 1}), "Exporte fertig");
    EXPECT_EQ(words({}), "");
}

}

}
