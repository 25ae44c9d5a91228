#include "files/NewFile.h"

#include "files/FileDescriptor.h"
#include "support/TestClips.h"

#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <QSysInfo>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace pointloom {
namespace {

using testing::UnorderedElementsAre;

class NewFileTest : public testing::Test {
protected:
    test::ClipFolder folder;

    QString path(const char* name) const { return folder.path(QString::fromUtf8(name)); }

    static std::string contentOf(const QString& path) { return test::readFile(path).toStdString(); }

    static void fill(const NewFile& file, const QByteArray& bytes) {
        writeAll(FileDescriptor(file.temporaryPath(), O_WRONLY), bytes, file.temporaryPath());
    }

    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(path(".").toStdString()))
            found.push_back(entry.path().filename().string());
        return found;
    }
};

TEST_F(NewFileTest, TakesItsPlaceWhenItIsKeptAndLeavesNothingWhenItIsNot) {
    const QString place = folder.write(QStringLiteral("match.mp4"), "earlier");
    ASSERT_EQ(::chmod(place.toUtf8().constData(), 0640), 0);
    {
        const NewFile file(place);
        fill(file, "half");
        EXPECT_EQ(contentOf(place), "earlier");
    }
    EXPECT_THAT(names(), UnorderedElementsAre("match.mp4"));
    EXPECT_EQ(contentOf(place), "earlier");

    NewFile file(place);
    fill(file, "whole");
    EXPECT_EQ(file.keep(), place);
    EXPECT_EQ(contentOf(place), "whole");
    EXPECT_THAT(names(), UnorderedElementsAre("match.mp4"));
    struct stat there {};
    ASSERT_EQ(::stat(place.toUtf8().constData(), &there), 0);
    EXPECT_EQ(there.st_mode & 0777, 0640U);
}

TEST_F(NewFileTest, FollowsLinksAlsoToWhatIsNotThereYet) {
    folder.write(QStringLiteral("target.plp"), "earlier");
    ASSERT_EQ(::symlink("target.plp", path("link.plp").toUtf8().constData()), 0);
    ASSERT_EQ(::symlink("later.plp", path("dangling.plp").toUtf8().constData()), 0);
    writeWhole(path("link.plp"), "new");
    writeWhole(path("dangling.plp"), "first");
    EXPECT_TRUE(QFileInfo(path("link.plp")).isSymLink());
    EXPECT_TRUE(QFileInfo(path("dangling.plp")).isSymLink());
    EXPECT_EQ(contentOf(path("target.plp")), "new");
    EXPECT_EQ(contentOf(path("later.plp")), "first");
    EXPECT_THAT(names(), UnorderedElementsAre("target.plp", "later.plp", "link.plp", "dangling.plp"));
}

TEST_F(NewFileTest, OfOneNameAllGetTheirOwnWhereNoneMayBeReplaced) {
    folder.write(QStringLiteral("v.mp4"), "first");
    constexpr int count = 5;
    std::vector<std::string> kept(count);
    std::vector<std::thread> writers;
    for (std::size_t i = 0; i < count; ++i)
        writers.emplace_back([&, i] {
            NewFile file(path("v.mp4"), IfExists::addNumber);
            fill(file, QByteArray::number(static_cast<int>(i)));
            kept[i] = file.keep().toStdString();
        });
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_THAT(names(),
                UnorderedElementsAre("v.mp4", "v-2.mp4", "v-3.mp4", "v-4.mp4", "v-5.mp4", "v-6.mp4"));
    EXPECT_EQ(contentOf(path("v.mp4")), "first");
    for (std::size_t i = 0; i < count; ++i)
        EXPECT_EQ(contentOf(QString::fromStdString(kept[i])), std::to_string(i));
}

TEST_F(NewFileTest, ANameIsFreeOnlyWithThatOfTheFileBesideIt) {
    writeWhole(path("v.srt"), "theirs");
    ASSERT_EQ(::symlink("nowhere", path("v-2.srt").toUtf8().constData()), 0);
    NewFile file(path("v.mp4"), IfExists::addNumber);
    EXPECT_EQ(file.keep(QStringLiteral("srt")), path("v-3.mp4"));
    EXPECT_EQ(pathBeside(path("v-3.mp4"), QStringLiteral("srt")), path("v-3.srt"));
    EXPECT_EQ(pathBeside(path("a.b/v.1.mp4"), QStringLiteral("srt")), path("a.b/v.1.srt"));
    EXPECT_THAT(names(), UnorderedElementsAre("v.srt", "v-2.srt", "v-3.mp4"));
}

TEST_F(NewFileTest, RemovesWhatDiedProcessesLeftOfItAndNothingElse) {
    const std::string host = QSysInfo::machineHostName().toStdString();
    const auto remains = [&](const std::string& name, long process) {
        return name + '.' + host + '.' + std::to_string(process) + ".7.unfinished";
    };
    constexpr long dead = 999999999;
    for (const std::string& name :
         {remains("v.mp4", dead), remains("v.mp4", getppid()), remains("w.mp4", dead),
          std::string("v.mp4.unfinished"), "v.mp4.elsewhere." + std::to_string(dead) + ".7.unfinished"})
        folder.write(QString::fromStdString(name), "half");
    const QString parts = folder.path(QString::fromStdString("v.mp4." + host + ".999999998.1.unfinished"));
    ASSERT_TRUE(QDir().mkpath(parts + QStringLiteral("/parts")));
    folder.write(QStringLiteral("outside"), "kept");
    ASSERT_EQ(::symlink(path("outside").toUtf8().constData(),
                        (parts + QStringLiteral("/link")).toUtf8().constData()),
              0);
    writeWhole(path("v.mp4"), "whole");
    EXPECT_THAT(names(), UnorderedElementsAre("v.mp4", "outside", remains("v.mp4", getppid()),
                                              remains("w.mp4", dead), "v.mp4.unfinished",
                                              "v.mp4.elsewhere." + std::to_string(dead) + ".7.unfinished"));
}

TEST_F(NewFileTest, WhatCannotBeReplacedIsNamedAndStays) {
    ASSERT_TRUE(QDir().mkpath(path("folder")));
    ASSERT_EQ(::mkfifo(path("pipe").toUtf8().constData(), 0600), 0);
    ASSERT_EQ(::symlink("circle", path("circle").toUtf8().constData()), 0);
    for (const char* name : {"folder", "pipe", "circle", "nowhere/file"}) {
        try {
            writeWhole(path(name), "bytes");
            FAIL() << name;
        } catch (const FileError& error) {
            EXPECT_EQ(std::string(error.what()).find(path(name).toStdString() + ": could not be "), 0U)
                << error.what();
        }
    }
    EXPECT_THAT(names(), UnorderedElementsAre("folder", "pipe", "circle"));
}

TEST_F(NewFileTest, AFolderTakesAnEmptyPlaceOnly) {
    const auto make = [&](const char* name) {
        NewFolder pictures(path(name));
        QFile picture(pictures.temporaryPath() + QStringLiteral("/1.png"));
        EXPECT_TRUE(picture.open(QIODevice::WriteOnly));
        return pictures.keep();
    };
    ASSERT_TRUE(QDir().mkpath(path("empty")));
    EXPECT_EQ(make("empty"), path("empty"));
    EXPECT_EQ(make("new"), path("new"));
    EXPECT_TRUE(QFile::exists(path("empty/1.png")));
    EXPECT_TRUE(QFile::exists(path("new/1.png")));
    EXPECT_FALSE(NewFolder::canBeAt(path("new")));
    folder.write(QStringLiteral("file"), "kept");
    EXPECT_FALSE(NewFolder::canBeAt(path("file")));
    EXPECT_THROW(make("file"), FileError);
    EXPECT_EQ(contentOf(path("file")), "kept");
    EXPECT_THAT(names(), UnorderedElementsAre("empty", "new", "file"));
}

TEST_F(NewFileTest, InputsAreKnownByWhateverName) {
    const QString video = folder.write(QStringLiteral("match.mp4"), "pictures");
    ASSERT_EQ(::symlink("match.mp4", path("x.png").toUtf8().constData()), 0);
    ASSERT_EQ(::link(video.toUtf8().constData(), path("y.png").toUtf8().constData()), 0);
    ASSERT_EQ(::symlink(".", path("here").toUtf8().constData()), 0);
    const std::vector<InputFile> inputs{{path("none.png"), QStringLiteral("the logo")},
                                        {video, QStringLiteral("the source video")}};
    for (const char* name : {"match.mp4", "./match.mp4", "x.png", "y.png", "here/match.mp4"}) {
        const InputFile* replaced = replacedInput(path(name), inputs);
        ASSERT_NE(replaced, nullptr) << name;
        EXPECT_EQ(replaced->role, QStringLiteral("the source video"));
    }
    EXPECT_EQ(replacedInput(path("other.mp4"), inputs), nullptr);
}

}
}
