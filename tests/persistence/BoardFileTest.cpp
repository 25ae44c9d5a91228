#include "persistence/BoardFile.h"
#include "DocumentSupport.h"

#include <QDir>
#include <QTemporaryDir>

namespace pointloom {
namespace {

BoardFile clubBoard() {
    BoardFile file{.base = TemplateID::wimbledon, .board = {}};
    file.board.name = QStringLiteral("TC Gr\u00fcn/Wei\u00df");
    file.board.colors.main = BoardColor{0x0B, 0x5D, 0x3B};
    file.board.colors.points = BoardColor{255, 255, 255, 0xCC};
    file.board.font = BoardFont::narrow;
    file.board.corner = 12.5;
    file.board.order = BoardOrder::pointsFirst;
    file.board.logo = BoardLogo::right;
    return file;
}

std::string faultOf(const QByteArray& text) {
    return documentFault([&] { BoardFile::decode(text, QStringLiteral("/boards/club.json")); });
}

TEST(BoardFileTest, ReadsAsItWasSavedAndAsItIsDocumented) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("club.json"));
    clubBoard().save(path);
    EXPECT_EQ(BoardFile::load(path), clubBoard());
    EXPECT_TRUE(readFile(path).contains("\"points\": \"#FFFFFFCC\""));

    const BoardFile small = BoardFile::decode(
        R"({"version":1,"template":"ttNeon","board":{"name":"  ","colors":{"main":"#a0b1c2"}}})",
        QStringLiteral("/boards/Blue two.json"));
    EXPECT_EQ(small.board.name, QStringLiteral("Blue two"));
    EXPECT_EQ(small.board.colors.main, (BoardColor{0xA0, 0xB1, 0xC2}));
    EXPECT_EQ(small.board.font, std::nullopt);
}

TEST(BoardFileTest, FaultsNameThePlace) {
    const auto withBoard = [](const QByteArray& board) {
        return faultOf(R"({"version":1,"template":"dark","board":)" + board + '}');
    };
    EXPECT_EQ(withBoard(R"({"name":"A","colors":{"main":"green"}})"),
              "club.json: board.colors.main: expected a colour as #RRGGBB or #RRGGBBAA, found \"green\"");
    EXPECT_EQ(withBoard(R"({"name":"A","colors":{"sets":"#12345"}})"),
              "club.json: board.colors.sets: expected a colour as #RRGGBB or #RRGGBBAA, found \"#12345\"");
    EXPECT_EQ(withBoard(R"({"name":"A","colors":{},"font":"comic"})"),
              "club.json: board.font: unknown value \"comic\"");
    EXPECT_EQ(withBoard(R"({"name":"A"})"), "club.json: board.colors: missing");
    EXPECT_EQ(faultOf(R"({"version":2,"template":"new","board":{}})"),
              "club.json: version: this program reads version 1 of boards, found 2");
    EXPECT_EQ(faultOf(R"({"version":1,"template":"stacked","board":{"name":"A","colors":{}}})"),
              "club.json: template: no board can be made from \"stacked\"");
    EXPECT_EQ(faultOf("[]"), "club.json: expected an object");
    EXPECT_EQ(faultOf("PNG").rfind("club.json: ", 0), 0U);
}

TEST(BoardFolderTest, KeepsBoardsOfTheSameNameAndTellsDamagedFiles) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("not/yet"));
    const BoardFolder boards(path);
    EXPECT_TRUE(boards.read().boards.empty());
    const QString first = boards.save(clubBoard());
    BoardFile second = clubBoard();
    second.base = TemplateID::dark;
    const QString other = boards.save(second);
    EXPECT_NE(first, other);
    BoardFile early = clubBoard();
    early.board.name = QStringLiteral("A") + QString(300, u'x');
    boards.save(early);
    writeFile(QDir(path).filePath(QStringLiteral("broken.json")), "{");

    second.board.name = QStringLiteral("Z");
    EXPECT_EQ(boards.save(second, other), other) << "a renamed board stays in its file";
    const auto content = boards.read();
    ASSERT_EQ(content.boards.size(), 3U);
    EXPECT_EQ(content.boards[0].file.board.name.size(), 60);
    EXPECT_EQ(content.boards[1].file, clubBoard());
    EXPECT_EQ(content.boards[2].file, second);
    ASSERT_EQ(content.faults.size(), 1);
    EXPECT_TRUE(content.faults.first().startsWith(u"broken.json: "));

    BoardFolder::remove(first);
    EXPECT_EQ(boards.read().boards.size(), 2U);
}

}
}
