#include "ui/common/Dialogs.h"
#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QStandardPaths>

namespace pointloom {

TEST(DialogFolderTest, IsWhereTheLastOfItsKindEndedOrBesideTheVideo) {
    test::ScreenContext screen;
    const auto folderFor = [&](const char* filter) {
        return firstFolder(screen.state, screen.defaults, QString::fromUtf8(filter));
    };
    const auto made = [&](const char* name) {
        QDir(screen.folder.path()).mkpath(QString::fromUtf8(name));
        return screen.folder.filePath(QString::fromUtf8(name));
    };
    EXPECT_EQ(folderFor("Videos (*.mp4 *.MOV)"),
              QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    const QString films = made("films");
    const QString tables = made("tables");
    screen.state.videoURL = QUrl::fromLocalFile(films + QStringLiteral("/final.mp4"));
    EXPECT_EQ(folderFor("CSV (*.csv *.CSV)"), films);
    rememberFolder(screen.defaults, QStringLiteral("CSV (*.csv)"), tables + QStringLiteral("/a.csv"));
    EXPECT_EQ(folderFor("Tabelle (*.csv *.CSV)"), tables) << "in every language";
    EXPECT_EQ(folderFor("Videos (*.mp4 *.MOV)"), films);
    QDir().rmdir(tables);
    EXPECT_EQ(folderFor("CSV (*.csv)"), films) << "a stick that was pulled out";
}

}
