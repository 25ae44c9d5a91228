#include "info/InfoDictionary.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>

namespace pointloom {
namespace {

TEST(InfoDictionary, WhatIsMissingOrNoTextReadsAsAbsentAndVersionsAsZero) {
    const auto info = InfoDictionary::fromJson(R"({"CFBundleVersion": 7, "SentryDSN": "https://k@h/1"})");
    EXPECT_EQ(info.text("SentryDSN"), QStringLiteral("https://k@h/1"));
    EXPECT_EQ(info.text("Nothing"), std::nullopt);
    EXPECT_EQ(info.shortVersion(), QStringLiteral("0"));
    EXPECT_EQ(info.buildNumber(), QStringLiteral("0"));
}

TEST(InfoDictionary, ABrokenFileIsAnEmptyDictionary) {
    const QByteArray key = R"({"SentryDSN": "x", "more": )";
    for (const QByteArray& text : {QByteArray(), QByteArray("[1]"), QByteArray("null"), key,
                                   key + QByteArray(200, '['), key + '"' + QByteArray(70'000, 'a') + "\"}"})
        EXPECT_EQ(InfoDictionary::fromJson(text).text("SentryDSN"), std::nullopt)
            << text.left(60).constData();

    const QTemporaryDir folder;
    EXPECT_EQ(InfoDictionary::fromFile(folder.path()).text("SentryDSN"), std::nullopt);
    EXPECT_EQ(InfoDictionary::fromFile(folder.filePath(QStringLiteral("none"))).text("SentryDSN"),
              std::nullopt);
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(qPrintable(pipe), S_IRWXU), 0);
    EXPECT_EQ(InfoDictionary::fromFile(pipe).text("SentryDSN"), std::nullopt);
}

TEST(InfoDictionary, TheOneOfTheBuildNamesTheVersionAndNoServices) {
    const auto info =
        InfoDictionary::fromFile(QCoreApplication::applicationDirPath() + QStringLiteral("/../Info.json"));
    EXPECT_NE(info.shortVersion(), QStringLiteral("0"));
    for (const char* key : {"SentryDSN", "LicenseServiceURL", "LicensePublicKey"})
        EXPECT_EQ(info.text(key), QString()) << key;
}

}
}
