#include "ui/settings/NewsDialog.h"

#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>
#include <QLabel>

namespace pointloom::test {
namespace {

const QString written = QStringLiteral(R"(# Changelog

All notable changes.

## [Unreleased]

### Added

- Not yet out.

## [1.10.0] - 2027-03-04

### Added

- **Bold** and `code` words, <kbd>Ctrl</kbd>, and
  [a link](docs/x.md) over two lines.
- Second.

### Security

- Nobody sees this.

### Fixed

- Third.

## [1.9.0] - 2027-01-02

### Changed

- Fourth.
)");

TEST(ReleaseNotes, AreThoseAfterTheVersionThatRanLast) {
    const auto news = readReleases(written, QVersionNumber(1, 9));
    ASSERT_EQ(news.size(), 1U);
    EXPECT_EQ(news[0].version, QVersionNumber(1, 10, 0));
    EXPECT_EQ(news[0].day, QStringLiteral("2027-03-04"));
    const std::vector<ChangeList> changes{
        {ChangeKind::added,
         {QStringLiteral("Bold and code words, Ctrl, and a link over two lines."),
          QStringLiteral("Second.")}},
        {ChangeKind::fixed, {QStringLiteral("Third.")}}};
    EXPECT_EQ(news[0].changes, changes);
    EXPECT_EQ(readReleases(written, {}).size(), 3U);
    EXPECT_TRUE(readReleases(written, QVersionNumber(1, 10)).empty());
    EXPECT_TRUE(readReleases(QStringLiteral("## [1.0.0]\n- stray\n"), {}).empty());
}

TEST(NewsDialogTest, ShowsTheChangelogInTheLanguageOfTheSession) {
    ScreenContext screen;
    screen.state.language = Language::german;
    NewsDialog news(screen.context, QVersionNumber(0, 0, 9), nullptr);
    QStringList texts;
    for (const QLabel* label : news.findChildren<QLabel*>())
        texts << label->text();
    EXPECT_EQ(news.windowTitle(), QStringLiteral("Was ist neu"));
    EXPECT_TRUE(texts.contains(QStringLiteral("Version 0.1.0   ·   Samstag, 21. November 2026")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Neu")));
    EXPECT_FALSE(texts.contains(QStringLiteral("In Vorbereitung")));
}

}
}
