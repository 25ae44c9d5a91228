#include "cli/PictureFile.h"

#include "cli/CommandError.h"
#include "persistence/DocumentFile.h"

#include <QBuffer>

namespace pointloom::cli {

void writePng(const QImage& picture, const QString& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (picture.isNull() || !picture.save(&buffer, "PNG"))
        throw CommandError(path + QStringLiteral(": the picture cannot be written as PNG"));
    writeDocument(path, bytes);
}

}
