#include "persistence/PictureFile.h"

#include "persistence/DocumentError.h"
#include "persistence/DocumentFile.h"

#include <QBuffer>

namespace pointloom {

void writePng(const QImage& picture, const QString& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (picture.isNull() || !picture.save(&buffer, "PNG"))
        throw DocumentError(path, QStringLiteral("the picture cannot be written as PNG"));
    writeDocument(path, bytes);
}

}
