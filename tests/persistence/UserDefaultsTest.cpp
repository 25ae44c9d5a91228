#include "persistence/UserDefaults.h"

#include "persistence/SessionLock.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QSize>
#include <QTemporaryDir>
#include <random>

namespace pointloom {
namespace {

class UserDefaultsFile : public testing::Test {
protected:
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("settings/Pointloom.ini"));

    // Under a name of its own: QSettings does not look again at a file that it has read a moment ago.
    QVariant readByQSettings(const char* key) {
        const QString copy = folder.filePath(QStringLiteral("copy%1.ini").arg(m_copies++));
        EXPECT_TRUE(QFile::copy(path, copy));
        return QSettings(copy, QSettings::IniFormat).value(QString::fromLatin1(key));
    }

private:
    int m_copies = 0;
};

QByteArray everyByte() {
    QByteArray bytes;
    for (int repeat = 0; repeat < 2; ++repeat) {
        for (int code = 0; code < 256; ++code)
            bytes.append(static_cast<char>(code));
    }
    return bytes + "a\xC3\xA9"
                   "bcd=;,%\"[General]\n\\x41 {\"key\":[1,2]}) ";
}

TEST_F(UserDefaultsFile, AnyBytesComeBackAndQSettingsReadsThemToo) {
    UserDefaults defaults(path);
    EXPECT_FALSE(defaults.data("pointloom.session"));
    EXPECT_FALSE(defaults.boolean("crashConsentAsked"));

    for (const QByteArray& bytes : {everyByte(), QByteArray(), QByteArray("{}"), QByteArray(" padded ")}) {
        defaults.setData("pointloom.session", bytes);
        EXPECT_EQ(defaults.data("pointloom.session"), bytes);
        EXPECT_EQ(readByQSettings("pointloom.session").toByteArray(), bytes);
    }
    defaults.setBoolean("crashReportingEnabled", true);
    EXPECT_TRUE(defaults.boolean("crashReportingEnabled"));
    EXPECT_TRUE(readByQSettings("crashReportingEnabled").toBool());
    EXPECT_EQ(QDir(QFileInfo(path).path()).entryList(QDir::Files),
              QStringList{QStringLiteral("Pointloom.ini")});
}

TEST_F(UserDefaultsFile, ValuesThatQSettingsWroteAreReadAndItsOthersKept) {
    const QByteArray session = everyByte();
    QDir().mkpath(QFileInfo(path).path());
    {
        QSettings settings(path, QSettings::IniFormat);
        settings.setValue(QStringLiteral("pointloom.session"), session);
        settings.setValue(QStringLiteral("crashConsentAsked"), true);
        settings.setValue(QStringLiteral("window/size"), QSize(900, 640));
        settings.setValue(QStringLiteral("window/crashConsentAsked"), QStringLiteral("another"));
    }
    UserDefaults defaults(path);
    EXPECT_EQ(defaults.data("pointloom.session"), session);
    EXPECT_TRUE(defaults.boolean("crashConsentAsked"));

    defaults.setBoolean("crashConsentAsked", false);
    defaults.remove("pointloom.session");
    EXPECT_FALSE(defaults.data("pointloom.session"));
    EXPECT_FALSE(defaults.boolean("crashConsentAsked"));
    EXPECT_EQ(readByQSettings("window/size").toSize(), QSize(900, 640));
    EXPECT_EQ(readByQSettings("window/crashConsentAsked").toString(), QStringLiteral("another"));
}

TEST(IniText, AllOtherLinesStayByteForByte) {
    const QByteArray text(
        "; mine\r\nloose=1\n[window]\nkey=2\n[general]\nkey = 3 ; note\nb=\"x;y\"\nkey=4\n[z]\nc=5");
    EXPECT_EQ(IniText::value(text, "key"), "4");
    EXPECT_EQ(IniText::value(text, "loose"), "1");
    EXPECT_EQ(IniText::value(text, "b"), "x;y");
    EXPECT_EQ(IniText::value(text, "c"), std::nullopt);
    EXPECT_EQ(IniText::withValue(text, "key", "9"),
              "; mine\r\nloose=1\n[window]\nkey=2\n[general]\nkey=\"9\"\nb=\"x;y\"\n[z]\nc=5");
    EXPECT_EQ(IniText::withValue(text, "new", "9"),
              "; mine\r\nloose=1\n[window]\nkey=2\n[general]\nnew=\"9\"\nkey = 3 ; "
              "note\nb=\"x;y\"\nkey=4\n[z]\nc=5");
    EXPECT_EQ(IniText::withValue("[z]\nc=5", "new", "9"), "[General]\nnew=\"9\"\n\n[z]\nc=5");
    EXPECT_EQ(IniText::withValue("[General]", "new", "9"), "[General]\nnew=\"9\"\n");
}

TEST(IniText, EscapesAreReadAsQSettingsWritesThem) {
    const QByteArray text("a9=\"\\101-\\60\\x4A\\x9z\\t\\\"\\;\"; note\n=none\n");
    EXPECT_EQ(IniText::value(text, "a9"), "A-0J\tz\t\";");
    EXPECT_TRUE(IniText::isPlainKey("crash-9.Z_a0"));
    EXPECT_FALSE(IniText::isPlainKey("a b"));
    EXPECT_FALSE(IniText::isPlainKey(""));
}

TEST(IniText, DamagedTextIsReadWithoutHarmAndWritingIntoItWorks) {
    std::mt19937 random(3);
    const QByteArray alphabet("[]General=\"\\x;\n k1");
    for (int round = 0; round < 20000; ++round) {
        QByteArray text;
        for (std::size_t length = random() % 40; length > 0; --length)
            text += alphabet[static_cast<qsizetype>(random() % static_cast<std::size_t>(alphabet.size()))];
        static_cast<void>(IniText::value(text, "k"));
        ASSERT_EQ(IniText::value(IniText::withValue(text, "k", "v"), "k"), "v") << text.toStdString();
        ASSERT_FALSE(IniText::value(IniText::withValue(text, "k", std::nullopt), "k")) << text.toStdString();
    }
}

TEST_F(UserDefaultsFile, ALinkIsFollowedAndAccessRightsStay) {
    UserDefaults(path).setBoolean("a", true);
    const auto rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    ASSERT_TRUE(QFile::setPermissions(path, rights));
    const QString link = folder.filePath(QStringLiteral("link.ini"));
    ASSERT_TRUE(QFile::link(path, link));

    UserDefaults(link).setBoolean("b", true);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(UserDefaults(path).boolean("a"));
    EXPECT_TRUE(UserDefaults(path).boolean("b"));
    EXPECT_TRUE(QFile::permissions(path).testFlags(rights));
    EXPECT_FALSE(QFile::permissions(path).testFlag(QFile::ReadOther));
}

TEST_F(UserDefaultsFile, AFileThatCannotBeReadIsNotOverwritten) {
    // A folder in place of the file.
    ASSERT_TRUE(QDir().mkpath(path));
    UserDefaults defaults(path);
    try {
        defaults.setBoolean("a", true);
        FAIL() << "nothing was thrown";
    } catch (const FileError& error) {
        EXPECT_NE(QString::fromUtf8(error.what()).indexOf(path), -1) << error.what();
    }
    EXPECT_TRUE(QFileInfo(path).isDir());
}

TEST_F(UserDefaultsFile, NothingIsWrittenThatIsTooLargeToBeRead) {
    UserDefaults(path).setBoolean("a", true);
    EXPECT_THROW(AtomicFile::write(path, QByteArray(AtomicFile::largestSize + 1, ';')), FileError);
    EXPECT_TRUE(UserDefaults(path).boolean("a"));
}

}
}
