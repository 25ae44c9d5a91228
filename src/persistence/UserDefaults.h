// The settings of one user: an INI file that QSettings reads too. Whatever is set is on the disk when the
// call returns, and a process that dies at any instant leaves the value before or the value after.
#pragma once

#include "files/FileError.h"

#include <optional>
#include <QByteArray>
#include <QString>
#include <string_view>

namespace pointloom {

/// Keys are plain: letters, digits, "_", "-" and ".". Several processes may use the same file; each call
/// reads it afresh. All throw FileError when the file cannot be read, and the setters when it cannot be
/// written, in which case it stays as it was.
class UserDefaults {
public:
    /// Where QSettings keeps the settings of this application.
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
