#include "export/segments/SegmentCache.h"

#include "files/FreeSpace.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <sys/stat.h>
#include <unistd.h>

namespace pointloom {

namespace {

// The end of a part: a box that every reader of MP4 and MOV skips (ISO/IEC 14496-12, 8.1.2).
struct Seal {
    std::array<char, 8> header{};
    std::array<char, 32> checksum{}; // of the key, the damage and the content
    std::int64_t lostFrames = 0;
    std::int64_t faultyFrames = 0;
    double secondsMissing = 0;
};

constexpr QByteArrayView sealHeader("\0\0\0\x40"
                                    "free",
                                    8);
static_assert(sizeof(Seal) == 64);

QString partPattern() {
    return QStringLiteral("*.part");
}

QFileInfoList partsIn(const QString& folder) {
    return QDir(folder).entryInfoList({partPattern()}, QDir::Files, QDir::Time | QDir::Reversed);
}

// Empty when the file cannot be read.
std::optional<QByteArray> checksumOf(QFile& file, qint64 length, const QString& key, Seal seal) {
    constexpr qint64 chunk = 1 << 20; // bytes
    seal.checksum = {};
    QCryptographicHash hash(QCryptographicHash::Blake2b_256);
    hash.addData(key.toLatin1());
    hash.addData(QByteArrayView(reinterpret_cast<const char*>(&seal), sizeof seal));
    if (!file.seek(0))
        return std::nullopt;
    for (qint64 left = length; left > 0;) {
        const QByteArray bytes = file.read(std::min(left, chunk));
        if (bytes.isEmpty())
            return std::nullopt;
        hash.addData(bytes);
        left -= bytes.size();
    }
    return hash.result();
}

Seal sealFor(const media::Damage& damage) {
    Seal seal;
    std::ranges::copy(sealHeader, seal.header.begin());
    seal.lostFrames = damage.lostFrames;
    seal.faultyFrames = damage.faultyFrames;
    seal.secondsMissing = damage.secondsMissing;
    return seal;
}

bool appendSeal(const QString& path, const QString& key, const media::Damage& damage) {
    QFile file(path);
    Seal seal = sealFor(damage);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    const auto checksum = checksumOf(file, file.size(), key, seal);
    if (!checksum)
        return false;
    std::ranges::copy(*checksum, seal.checksum.begin());
    const QByteArrayView bytes(reinterpret_cast<const char*>(&seal), sizeof seal);
    return file.seek(file.size()) && file.write(bytes.data(), bytes.size()) == bytes.size() && file.flush();
}

// The damage noted in a part that is whole and has the key.
std::optional<media::Damage> damageIn(const QString& path, const QString& key) {
    QFile file(path);
    Seal seal;
    constexpr auto sealSize = static_cast<qint64>(sizeof seal);
    if (!file.open(QIODevice::ReadOnly) || file.size() <= sealSize || !file.seek(file.size() - sealSize) ||
        file.read(reinterpret_cast<char*>(&seal), sealSize) != sealSize)
        return std::nullopt;
    const auto checksum = checksumOf(file, file.size() - sealSize, key, seal);
    if (!checksum || !std::ranges::equal(*checksum, seal.checksum))
        return std::nullopt;
    return media::Damage{seal.lostFrames, seal.faultyFrames, seal.secondsMissing};
}

void markUsed(const QString& part) {
    static_cast<void>(::utimensat(AT_FDCWD, QFile::encodeName(part).constData(), nullptr, 0));
}

// Two names of one file; a copy where the file system has no such names.
bool nameToo(const QString& path, const QString& name) {
    return ::link(QFile::encodeName(path).constData(), QFile::encodeName(name).constData()) == 0 ||
           (errno != EEXIST && QFile::copy(path, name));
}

}

SegmentCache::SegmentCache(QString folder, qint64 limit, qint64 reserve)
    : m_folder(std::move(folder))
    , m_limit(limit)
    , m_reserve(reserve)
    , m_opened(QDateTime::currentDateTimeUtc().addSecs(-1)) { // clocks of file systems are coarse
    if (QDir().mkpath(m_folder)) {
        // Pictures of the user's, for no other user to see.
        QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        makeRoom(0);
    }
}

QString SegmentCache::standardFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/Pointloom/segments");
}

QString SegmentCache::pathOf(const QString& key) const {
    return QDir(m_folder).filePath(key + QStringLiteral(".part"));
}

bool SegmentCache::contains(const QString& key) const {
    return QFileInfo(pathOf(key)).isFile();
}

std::optional<media::Damage> SegmentCache::take(const QString& key, const QString& path) const {
    const QString part = pathOf(key);
    if (!contains(key) || !nameToo(part, path))
        return std::nullopt;
    const auto damage = damageIn(path, key);
    if (!damage) {
        QFile::remove(path);
        QFile::remove(part);
        return std::nullopt;
    }
    markUsed(part);
    return damage;
}

std::optional<QString> SegmentCache::find(const QString& key) const {
    const QString part = pathOf(key);
    if (!contains(key))
        return std::nullopt;
    if (!damageIn(part, key)) {
        QFile::remove(part);
        return std::nullopt;
    }
    markUsed(part);
    return part;
}

void SegmentCache::keep(const QString& key, const QString& path, const media::Damage& damage) const {
    static std::atomic<int> count = 0;
    const QString unfinished =
        pathOf(key) + QStringLiteral(".%1.%2.part").arg(::getpid()).arg(++count); // as all, removed in time
    if (!appendSeal(path, key, damage) || !makeRoom(QFileInfo(path).size()) || !nameToo(path, unfinished))
        return;
    const QByteArray from = QFile::encodeName(unfinished);
    if (std::rename(from.constData(), QFile::encodeName(pathOf(key)).constData()) != 0)
        ::unlink(from.constData());
}

qint64 SegmentCache::bytes() const {
    qint64 sum = 0;
    for (const QFileInfo& part : partsIn(m_folder))
        sum += part.size();
    return sum;
}

void SegmentCache::clear() const {
    for (const QFileInfo& part : partsIn(m_folder))
        QFile::remove(part.absoluteFilePath());
}

// False when there is no space for so many bytes more. Parts used since the cache was opened do not make
// space for each other, else an export larger than the limit would find none of its parts the next time.
bool SegmentCache::makeRoom(qint64 bytes) const {
    const QFileInfoList parts = partsIn(m_folder);
    qint64 total = bytes;
    for (const QFileInfo& part : parts)
        total += part.size();
    qint64 lacking = m_reserve - freeBytes(m_folder).value_or(m_reserve);
    for (const QFileInfo& part : parts) {
        const bool isBeyondLimit = total > m_limit && part.lastModified() < m_opened;
        if (!isBeyondLimit && lacking <= 0)
            break;
        if (QFile::remove(part.absoluteFilePath())) {
            total -= part.size();
            lacking -= part.size();
        }
    }
    return total <= m_limit && lacking <= 0;
}

}
