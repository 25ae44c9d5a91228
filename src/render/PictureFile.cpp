#include "render/PictureFile.h"

#include <fcntl.h>
#include <QFile>
#include <QImageReader>
#include <sys/stat.h>
#include <unistd.h>

namespace pointloom {

namespace {

QImage decode(QFile& file, const QByteArray& format);

/// Opens without waiting, since opening a pipe would wait for its writer, and keeps regular files only.
bool openRegularFile(QFile& file, const QString& path) {
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return false;
    }
    return true;
}

}

QImage loadPictureFile(const QString& path) {
    QFile file;
    if (path.contains(QChar::Null) || !openRegularFile(file, path))
        return {};
    for (const char* format : {"png", "jpeg"}) {
        const QImage image = decode(file, format);
        if (!image.isNull())
            return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    return {};
}

namespace {

// Qt's own limit, 128 MB in version 6.4, is below what is allowed here.
void raiseQtLimit() {
    constexpr int mostMegabytes = 256;
    static const bool isRaised = (QImageReader::setAllocationLimit(mostMegabytes), true);
    static_cast<void>(isRaised);
}

QImage decode(QFile& file, const QByteArray& format) {
    raiseQtLimit();
    file.seek(0);
    QImageReader reader(&file, format);
    reader.setAutoDetectImageFormat(false); // a file must not choose its decoder
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(true);
    if (!reader.canRead()) // by its first bytes; libpng would complain on standard error
        return {};
    const QSize size = reader.size();
    if (size.isEmpty() || qint64{size.width()} * size.height() > mostPicturePixels)
        return {};
    return reader.read();
}

}

}
