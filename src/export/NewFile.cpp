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
    removeRemains();
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

void NewFile::removeRemains() const {
    const QFileInfo file(m_path);
    const QRegularExpression remains(QStringLiteral("^%1\\.%2\\.(\\d+)\\.\\d+%3$")
                                         .arg(QRegularExpression::escape(file.fileName()),
                                              QRegularExpression::escape(QSysInfo::machineHostName()),
                                              QRegularExpression::escape(ending)));
    for (const QString& name : file.dir().entryList(QDir::Files | QDir::Hidden)) {
        const auto match = remains.match(name);
        if (match.hasMatch() && !isRunning(match.captured(1).toLongLong()))
            QFile::remove(file.dir().filePath(name));
    }
}

}
