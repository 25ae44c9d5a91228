#include "export/FileFingerprint.h"

#include "export/ExportOptions.h"

#include <algorithm>
#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace pointloom {

namespace {

constexpr qint64 endLength = 1024 * 1024; // bytes hashed at each end: videos are too long to be read whole

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw ExportError::exportFailed(path + QStringLiteral(": ") + reason);
}

QString hashOfEnds(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(path, QStringLiteral("cannot be read: ") + file.errorString());
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(file.read(endLength));
    if (file.size() > endLength) {
        file.seek(std::max(endLength, file.size() - endLength));
        hash.addData(file.read(endLength));
    }
    if (file.error() != QFileDevice::NoError)
        fail(path, QStringLiteral("cannot be read: ") + file.errorString());
    return QString::fromLatin1(hash.result().toHex());
}

}

FileFingerprint FileFingerprint::of(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile()) // pipes and devices would never end
        fail(path, info.exists() ? QStringLiteral("is not a file") : QStringLiteral("there is no such file"));
    return {info.absoluteFilePath(), info.size(), info.lastModified().toSecsSinceEpoch(), hashOfEnds(path)};
}

void FileFingerprint::requireUnchanged() const {
    const FileFingerprint now = of(path);
    if (now.size != size)
        fail(path,
             QStringLiteral("the file has changed since the plan was made: it had %1 bytes, now it has %2")
                 .arg(size)
                 .arg(now.size));
    if (now.hash != hash)
        fail(path, QStringLiteral("the file has changed since the plan was made: its content is another"));
    if (now.modified != modified)
        fail(path, QStringLiteral("the file was written to after the plan was made; make a new plan, or copy "
                                  "it with its time"));
}

}
