#include "persistence/UserDefaults.h"

#include "persistence/AtomicFile.h"
#include "persistence/IniText.h"

#include <QFileInfo>
#include <QSettings>

namespace pointloom {

QString UserDefaults::standardPath() {
    const QString name = QStringLiteral("Pointloom");
    return QSettings(QSettings::IniFormat, QSettings::UserScope, name, name).fileName();
}

UserDefaults::UserDefaults(QString path)
    : m_path(std::move(path)) {}

std::optional<QByteArray> UserDefaults::data(std::string_view key) const {
    const auto value = IniText::value(AtomicFile::read(m_path), key);
    return value ? std::optional(IniText::toData(*value)) : std::nullopt;
}

bool UserDefaults::boolean(std::string_view key) const {
    const auto value = IniText::value(AtomicFile::read(m_path), key);
    return value && (*value == "true" || *value == "1");
}

void UserDefaults::setData(std::string_view key, const QByteArray& bytes) {
    store(key, IniText::fromData(bytes));
}

void UserDefaults::setBoolean(std::string_view key, bool value) {
    store(key, QByteArray(value ? "true" : "false"));
}

void UserDefaults::remove(std::string_view key) {
    if (QFileInfo::exists(m_path))
        store(key, std::nullopt);
}

void UserDefaults::store(std::string_view key, const std::optional<QByteArray>& value) {
    Q_ASSERT(IniText::isPlainKey(key));
    const QString folder = QFileInfo(m_path).absolutePath();
    AtomicFile::createFolder(folder);
    // Another process may set another key: nobody comes between reading and writing.
    const FolderGuard guard(folder);
    AtomicFile::write(m_path, IniText::withValue(AtomicFile::read(m_path), key, value));
}

}
