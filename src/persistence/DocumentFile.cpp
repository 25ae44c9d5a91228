#include "persistence/DocumentFile.h"

#include "files/FileDescriptor.h"
#include "files/NewFile.h"
#include "json/JsonCoding.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

namespace pointloom {

namespace {

std::string shownName(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    constexpr std::size_t longestFileName = 255; // bytes, of most file systems
    return json::printable((name.isEmpty() ? path : name).toStdString(), longestFileName);
}

}

DocumentError::DocumentError(const QString& path, const QString& reason)
    : std::runtime_error(shownName(path) + ": " + reason.toStdString()) {}

namespace {

QString asReason(QString errorText) {
    while (errorText.endsWith(u'.'))
        errorText.chop(1);
    return errorText;
}

void requireRegularFile(const QString& path, const QFileInfo& info) {
    if (info.isDir())
        throw DocumentError(path, QStringLiteral("is a folder, not a file"));
    if (!info.isFile())
        throw DocumentError(path, QStringLiteral("is not a regular file"));
}

}

QByteArray readDocument(const QString& path, qint64 byteLimit) {
    const QFileInfo info(path);
    if (!info.exists())
        throw DocumentError(path, QStringLiteral("no such file"));
    requireRegularFile(path, info);

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw DocumentError(path, asReason(file.errorString()));
    // One byte more than allowed tells a file that is too large, even one that grows meanwhile.
    const QByteArray content = file.read(byteLimit + 1);
    if (file.error() != QFileDevice::NoError)
        throw DocumentError(path, asReason(file.errorString()));
    if (content.size() > byteLimit)
        throw DocumentError(path, QStringLiteral("larger than %1 MB").arg(byteLimit / (1024 * 1024)));
    return content;
}

void requireNoInput(const QString& path, const std::vector<InputFile>& inputs) {
    if (const InputFile* input = replacedInput(path, inputs))
        throw DocumentError(path,
                            QStringLiteral("is ") + input->role + QStringLiteral("; choose another name"));
}

void writeDocument(const QString& path, const QByteArray& content) {
    const QFileInfo info(path);
    if (path.isEmpty())
        throw DocumentError(path, QStringLiteral("no file name was given"));
    if (info.exists())
        requireRegularFile(path, info);

    try {
        writeWhole(path, content);
    } catch (const FileError& error) {
        throw DocumentError(path, error.reason());
    }
}

void writePng(const QImage& picture, const QString& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (picture.isNull() || !picture.save(&buffer, "PNG"))
        throw DocumentError(path, QStringLiteral("the picture cannot be written as PNG"));
    writeDocument(path, bytes);
}

}
