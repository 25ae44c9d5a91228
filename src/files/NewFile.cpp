#include "files/NewFile.h"

#include "files/FileDescriptor.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <QCryptographicHash>
#include <QFile>
#include <QSysInfo>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace pointloom {

const InputFile* replacedInput(const QString& path, const std::vector<InputFile>& inputs) {
    const std::string output = QFile::encodeName(path).toStdString();
    const auto found = std::find_if(inputs.begin(), inputs.end(), [&](const InputFile& input) {
        std::error_code error; // one that does not exist is no other's equal
        return std::filesystem::equivalent(output, QFile::encodeName(input.path).toStdString(), error);
    });
    return found == inputs.end() ? nullptr : &*found;
}

QString pathBeside(const QString& path, const QString& ending) {
    std::filesystem::path place(QFile::encodeName(path).toStdString());
    place.replace_extension(QFile::encodeName(ending).toStdString());
    return QFile::decodeName(place.c_str());
}

namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".unfinished";
constexpr mode_t usualFile = 0666; // less what the user's mask takes away
constexpr mode_t privateFile = 0600;
constexpr mode_t accessBits = 0777;

fs::path encoded(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

QString decoded(const fs::path& path) {
    return QFile::decodeName(path.c_str());
}

fs::path folderOf(const fs::path& place) {
    const fs::path folder = place.parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

// The name, hashed when it is too long for a temporary name of 255 bytes, and the machine: workers on several
// machines may be given the same file.
std::string stemOf(const fs::path& place) {
    constexpr std::size_t longestName = 150; // bytes
    std::string name = place.filename().string();
    if (name.size() > longestName)
        name = QCryptographicHash::hash(QByteArray::fromStdString(name), QCryptographicHash::Sha256)
                   .toHex()
                   .toStdString();
    return name + '.' + QSysInfo::machineHostName().toStdString() + '.';
}

QString temporaryPathFor(const QString& place) {
    static std::atomic<int> count = 0;
    const fs::path path = encoded(place);
    std::string name = stemOf(path) + std::to_string(getpid()) + '.' + std::to_string(++count);
    return decoded(path.parent_path() / (name += ending));
}

bool isRunning(pid_t process) {
    return kill(process, 0) == 0 || errno != ESRCH;
}

// True for the temporary name of a process that died, with that stem.
bool isRemains(std::string_view name, std::string_view stem) {
    if (!name.starts_with(stem) || !name.ends_with(ending) || name.size() <= stem.size() + ending.size())
        return false;
    name = name.substr(stem.size(), name.size() - stem.size() - ending.size()); // "PROCESS.NUMBER"
    pid_t process = 0;
    int number = 0;
    const char* end = name.data() + name.size();
    const auto [dot, fault] = std::from_chars(name.data(), end, process);
    if (fault != std::errc() || dot == end || *dot != '.' || process <= 0)
        return false;
    const auto [rest, numberFault] = std::from_chars(dot + 1, end, number);
    return numberFault == std::errc() && rest == end && !isRunning(process);
}

void removeRemains(const QString& place) {
    const fs::path path = encoded(place);
    const std::string stem = stemOf(path);
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator entry(folderOf(path), error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        if (isRemains(entry->path().filename().string(), stem))
            found.push_back(entry->path());
    }
    for (const fs::path& remains : found)
        fs::remove_all(remains, error); // links are removed, not followed
}

// False when something has the name already.
bool moveToFreeName(const QString& from, const QString& to) {
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno == EINVAL ||
        errno == ENOSYS) { // a file system that cannot: the name is taken by a file of ours
        std::error_code error;
        const bool isOurs = fs::is_directory(encoded(from), error)
                                ? ::mkdir(target.constData(), accessBits) == 0
                                : FileDescriptor(to, O_WRONLY | O_CREAT | O_EXCL, usualFile).isOpen();
        if (isOurs && std::rename(source.constData(), target.constData()) == 0)
            return true;
    }
    if (errno == EEXIST)
        return false;
    throw FileError(to, "could not be created");
}

QString numbered(const QString& path, int number) {
    const fs::path place = encoded(path);
    return decoded(place.parent_path() /
                   (place.stem().string() + '-' + std::to_string(number) + place.extension().string()));
}

bool isTaken(const QString& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(encoded(path), error));
}

QString moveToNextFreeName(const QString& from, const QString& path, const QString& otherEnding = {}) {
    const auto isOtherTaken = [&](const QString& name) {
        return !otherEnding.isEmpty() && isTaken(pathBeside(name, otherEnding));
    };
    QString name = path;
    for (int number = 2; isOtherTaken(name) || !moveToFreeName(from, name); ++number)
        name = numbered(path, number);
    return name;
}

void requireReplaceable(const QString& path, const QString& place) {
    struct stat there {};
    const QByteArray name = QFile::encodeName(place);
    if (::stat(name.constData(), &there) != 0)
        return;
    if (S_ISDIR(there.st_mode))
        throw FileError(path, "could not be replaced", EISDIR);
    if (!S_ISREG(there.st_mode))
        throw FileError(path, "could not be replaced", QStringLiteral("not a regular file"));
    if (::access(name.constData(), W_OK) != 0)
        throw FileError(path, "could not be replaced");
}

// The access bits of the file that is replaced.
std::optional<mode_t> modeOf(const QString& place) {
    struct stat there {};
    if (::stat(QFile::encodeName(place).constData(), &there) != 0)
        return std::nullopt;
    return there.st_mode & accessBits;
}

}

NewFile::NewFile(const QString& path, IfExists ifExists, Access access)
    : m_path(path)
    , m_ifExists(ifExists)
    , m_access(access)
    , m_place(ifExists == IfExists::replace ? linkTarget(path) : path)
    , m_temporaryPath(temporaryPathFor(m_place)) {
    if (ifExists == IfExists::replace)
        requireReplaceable(path, m_place);
    removeRemains(m_place);
    const mode_t mode =
        access == Access::ownerOnly ? privateFile : modeOf(m_place).value_or(usualFile) | privateFile;
    if (!FileDescriptor(m_temporaryPath, O_WRONLY | O_CREAT | O_EXCL, mode).isOpen())
        throw FileError(path, "could not be created");
}

NewFile::~NewFile() {
    if (!m_isKept)
        ::unlink(QFile::encodeName(m_temporaryPath).constData());
}

QString NewFile::keep(const QString& otherEnding) {
    {
        const FileDescriptor file(m_temporaryPath, O_RDONLY);
        if (!file.isOpen())
            throw FileError(m_path, "could not be written");
        syncFile(file, m_path);
        const auto mode =
            m_access == Access::usual && m_ifExists == IfExists::replace ? modeOf(m_place) : std::nullopt;
        if (mode)
            static_cast<void>(::fchmod(file.get(), *mode));
    }
    if (m_ifExists == IfExists::addNumber)
        m_path = moveToNextFreeName(m_temporaryPath, m_path, otherEnding);
    else if (std::rename(QFile::encodeName(m_temporaryPath).constData(),
                         QFile::encodeName(m_place).constData()) != 0)
        throw FileError(m_path, "could not be replaced");
    m_isKept = true;
    syncFolder(decoded(folderOf(encoded(m_place))));
    return m_path;
}

namespace {

bool isFolder(const QString& path) {
    std::error_code error;
    return fs::is_directory(encoded(path), error);
}

// The place whose temporary name a folder gets that is made inside of an empty one.
QString placeInside(const QString& path) {
    return decoded(encoded(path) / "files");
}

}

bool NewFolder::canBeAt(const QString& path) {
    if (!isFolder(path))
        return !fs::exists(fs::symlink_status(encoded(path)));
    const std::string stem = stemOf(encoded(placeInside(path)));
    std::error_code error;
    fs::directory_iterator entry(encoded(path), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (!isRemains(entry->path().filename().string(), stem))
            return false;
    }
    return !error;
}

NewFolder::NewFolder(const QString& path, IfExists ifExists)
    : m_path(path)
    , m_ifExists(ifExists)
    , m_place(ifExists == IfExists::replace ? linkTarget(path) : path)
    , m_isInside(ifExists == IfExists::replace && isFolder(m_place)) {
    const QString named = m_isInside ? placeInside(m_place) : m_place;
    removeRemains(named);
    m_temporaryPath = temporaryPathFor(named);
    if (::mkdir(QFile::encodeName(m_temporaryPath).constData(), accessBits) != 0)
        throw FileError(path, "the folder cannot be made");
}

NewFolder::~NewFolder() {
    if (m_isKept)
        return;
    std::error_code error;
    fs::remove_all(encoded(m_temporaryPath), error);
}

QString NewFolder::keep() {
    const FileDescriptor folder(m_temporaryPath, O_RDONLY | O_DIRECTORY);
    // The whole file system at once: one call for each of a hundred thousand pictures takes minutes.
    if (!folder.isOpen() || ::syncfs(folder.get()) != 0)
        throw FileError(m_path, "could not be written to the disk");
    if (m_ifExists == IfExists::addNumber)
        m_path = moveToNextFreeName(m_temporaryPath, m_path);
    else if (m_isInside)
        moveFilesUp();
    else if (!moveToFreeName(m_temporaryPath, m_place))
        throw FileError(m_path, "could not be created", EEXIST);
    m_isKept = true;
    syncFolder(m_isInside ? m_place : decoded(folderOf(encoded(m_place))));
    return m_path;
}

void NewFolder::moveFilesUp() const {
    const fs::path target = encoded(m_place);
    std::vector<fs::path> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(encoded(m_temporaryPath)))
        names.push_back(entry.path().filename());
    const fs::path source = encoded(m_temporaryPath);
    for (std::size_t moved = 0; moved < names.size(); ++moved) {
        if (moveToFreeName(decoded(source / names[moved]), decoded(target / names[moved])))
            continue;
        for (std::size_t i = 0; i < moved; ++i)
            fs::remove(target / names[i]);
        throw FileError(decoded(target / names[moved]), "could not be created", EEXIST);
    }
    fs::remove(source);
}

void writeWhole(const QString& path, const QByteArray& bytes, Access access, IfExists ifExists) {
    NewFile file(path, ifExists, access);
    {
        const FileDescriptor content(file.temporaryPath(), O_WRONLY);
        if (!content.isOpen())
            throw FileError(path, "could not be written");
        writeAll(content, bytes, path);
    }
    file.keep();
}

}
