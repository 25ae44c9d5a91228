#include "render/PictureFile.h"

#include <gtest/gtest.h>
#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <sys/stat.h>

using namespace pointloom;

namespace {

class PictureFile : public testing::Test {
protected:
    QString pathOf(const char* name) const { return folder_.filePath(QString::fromLatin1(name)); }

    QString write(const char* name, const QByteArray& content) const {
        QFile file(pathOf(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    static QByteArray encoded(const char* format, QSize size = {40, 20}) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(200, 30, 30));
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(image.save(&buffer, format));
        return bytes;
    }

private:
    QTemporaryDir folder_;
};

}

TEST_F(PictureFile, PngAndJpegAreToldByContent) {
    for (const QString& path : {write("logo.png", encoded("PNG")), write("logo.jpg", encoded("JPG")),
                                write("misnamed.png", encoded("JPG")), write("nameless", encoded("PNG"))}) {
        const QImage image = loadPictureFile(path);
        EXPECT_EQ(image.size(), QSize(40, 20)) << qPrintable(path);
        EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_NEAR(image.pixelColor(20, 10).red(), 200, 3);
    }
}

TEST_F(PictureFile, OtherFormatsAreRefusedWhateverTheirName) {
    const QByteArray gif = QByteArray::fromBase64("R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7");
    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' "
                           "height='9'/></svg>";
    EXPECT_TRUE(loadPictureFile(write("a.gif", gif)).isNull());
    EXPECT_TRUE(loadPictureFile(write("a.png", gif)).isNull());
    EXPECT_TRUE(loadPictureFile(write("b.svg", svg)).isNull());
    EXPECT_TRUE(loadPictureFile(write("b.png", svg)).isNull());
    EXPECT_TRUE(loadPictureFile(write("c.png", encoded("BMP"))).isNull());
    EXPECT_TRUE(loadPictureFile(write("d.png", {})).isNull());
    EXPECT_TRUE(loadPictureFile(write("e.png", encoded("PNG").left(40))).isNull());
}

TEST_F(PictureFile, OnlyRegularFilesAreRead) {
    const QString pipe = pathOf("pipe.png");
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_TRUE(loadPictureFile(pipe).isNull()) << "and the call came back";
    EXPECT_TRUE(loadPictureFile(pathOf("")).isNull()) << "a folder";
    EXPECT_TRUE(loadPictureFile(pathOf("absent.png")).isNull());
    EXPECT_TRUE(loadPictureFile(QStringLiteral("/dev/zero")).isNull());
    EXPECT_TRUE(loadPictureFile(QStringLiteral("https://example.org/logo.png")).isNull());
    EXPECT_TRUE(loadPictureFile({}).isNull());
}

TEST_F(PictureFile, APhonesLargestPictureIsTaken) {
    // 137 MB as pixels.
    EXPECT_EQ(loadPictureFile(write("phone.jpg", encoded("JPG", {8000, 4300}))).size(), QSize(8000, 4300));
}

TEST_F(PictureFile, OversizedPicturesAreRefusedBeforeTheyAreDecoded) {
    QByteArray png = encoded("PNG");
    // The size in the header (IHDR, ISO/IEC 15948) says 10000 x 6000; its checksum is left as it was.
    constexpr qsizetype widthAt = 16;
    qToBigEndian<quint32>(10000, png.data() + widthAt);
    qToBigEndian<quint32>(6000, png.data() + widthAt + 4);
    EXPECT_TRUE(loadPictureFile(write("huge.png", png)).isNull());
    EXPECT_TRUE(loadPictureFile(write("large.jpg", encoded("JPG", {8000, 6300}))).isNull());
}
