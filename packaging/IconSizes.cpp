// icon-sizes PICTURE.svg OUTPUT.png PIXELS: draws a square icon at one size.
#include <cstdio>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: icon-sizes PICTURE.svg OUTPUT.png PIXELS\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    const int size = QByteArray(argv[3]).toInt();
    if (!drawing.isValid() || size < 1 || size > 1024) {
        std::fprintf(stderr, "icon-sizes: %s cannot be drawn at %s pixels\n", argv[1], argv[3]);
        return 1;
    }
    QImage icon(size, size, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    {
        QPainter painter(&icon);
        drawing.render(&painter);
    }
    if (!icon.save(QString::fromLocal8Bit(argv[2]))) {
        std::fprintf(stderr, "icon-sizes: %s cannot be written\n", argv[2]);
        return 1;
    }
    return 0;
}
