#include "export/NewFile.h"

#include "export/ExportOptions.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSysInfo>
#include <unistd.h>

namespace pointloom {

namespace {

const QString ending = QStringLiteral(".unfinished");

// Two workers may be given the same file, on one machine or on two.
QString ownName(const QString& path) {
    static std::atomic<int> count = 0;
    return path + u'.' + QSysInfo::machineHostName() + u'.' + QString::number(getpid()) + u'.' +
           QString::number(++count) + ending;
}

bool isRunning(qint64 process) {
    return kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH;
}

void removeRemains(const QString& path) {
    const QFileInfo file(path);
    const QRegularExpression remains(QStringLiteral("^%1\\.%2\\.(\\d+)\\.\\d+%3$")
                                         .arg(QRegularExpression::escape(file.fileName()),
                                              QRegularExpression::escape(QSysInfo::machineHostName()),
                                              QRegularExpression::escape(ending)));
    for (const QFileInfo& found : file.dir().entryInfoList(QDir::Files | QDir::Dirs | QDir::Hidden)) {
        const auto match = remains.match(found.fileName());
        if (!match.hasMatch() || isRunning(match.captured(1).toLongLong()))
            continue;
        if (found.isDir() && !found.isSymLink())
            QDir(found.filePath()).removeRecursively();
        else
            QFile::remove(found.filePath());
    }
}

[[noreturn]] void fail(const QString& path) {
    throw ExportError::exportFailed(path + QStringLiteral(": ") +
                                    QString::fromLocal8Bit(std::strerror(errno)));
}

void bringToDisk(const QString& path) {
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    const bool isOnDisk = descriptor >= 0 && fsync(descriptor) == 0;
    const int reason = errno;
    if (descriptor >= 0)
        close(descriptor);
    errno = reason;
    if (!isOnDisk)
        fail(path);
}

}

NewFile::NewFile(QString path)
    : m_path(std::move(path))
    , m_temporaryPath(ownName(m_path)) {
    removeRemains(m_path);
}

NewFile::~NewFile() {
    if (!m_isKept)
        QFile::remove(m_temporaryPath);
}

void NewFile::keep() {
    bringToDisk(m_temporaryPath);
    if (std::rename(QFile::encodeName(m_temporaryPath).constData(), QFile::encodeName(m_path).constData()) !=
        0)
        fail(m_path);
    m_isKept = true;
}

ScratchFolder::ScratchFolder(const QString& path)
    : m_path(ownName(path)) {
    removeRemains(path);
    if (!QDir().mkdir(m_path))
        throw ExportError::exportFailed(m_path + QStringLiteral(": the folder cannot be made"));
}

ScratchFolder::~ScratchFolder() {
    QDir(m_path).removeRecursively();
}

}
