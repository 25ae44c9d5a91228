// The settings of one user: an INI file that QSettings reads too. When a setter returns, the value is on the
// disk; a process that dies at any instant leaves the value before or the value after.
#pragma once

#include "files/FileDescriptor.h"

#include <optional>
#include <QByteArray>
#include <QString>
#include <string_view>

namespace pointloom {

/// The top-level values of an INI file in the dialect of QSettings. All other lines stay byte for byte.
namespace IniText {

/// True for keys that need no escaping: letters, digits, "_", "-" and ".".
bool isPlainKey(std::string_view key);

/// The value of a top-level key (section "General"), quotes and escapes resolved; the last of several.
std::optional<QByteArray> value(const QByteArray& text, std::string_view key);

/// The text with the value set, or without the key when there is no value.
QByteArray withValue(const QByteArray& text, std::string_view key, const std::optional<QByteArray>& value);

/// The form in which QSettings stores bytes, "@ByteArray(...)", and back; a value of another form is
/// taken as the bytes themselves.
QByteArray fromData(const QByteArray& bytes);
QByteArray toData(const QByteArray& value);

}

/// Keys are plain: letters, digits, "_", "-" and ".". Several processes may use the same file; each call
/// reads it afresh. All throw FileError when the file cannot be read, and the setters when it cannot be
/// written, in which case it stays as it was.
class UserDefaults {
public:
    /// The path at which QSettings stores the settings of this application.
    static QString standardPath();

    explicit UserDefaults(QString path = standardPath());

    const QString& path() const { return m_path; }

    std::optional<QByteArray> data(std::string_view key) const;
    /// False when absent.
    bool boolean(std::string_view key) const;

    void setData(std::string_view key, const QByteArray& bytes);
    void setBoolean(std::string_view key, bool value);
    void remove(std::string_view key);

private:
    void store(std::string_view key, const std::optional<QByteArray>& value);

    QString m_path;
};

}
