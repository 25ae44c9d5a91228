// Facts about the installed application that its distributor fills in: a read-only Info.json.
#pragma once

#include <map>
#include <optional>
#include <QByteArray>
#include <QString>
#include <string>

namespace pointloom {

/// The application's information dictionary. A missing or broken file reads as an empty one.
class InfoDictionary {
public:
    /// The Info.json beside the executable (build folder), else the one installed under
    /// ../share/pointloom. Read once for each call.
    static InfoDictionary ofApplication();

    /// Reads a file; empty when it is missing, larger than 64 KiB or not a JSON object.
    static InfoDictionary fromFile(const QString& path);

    static InfoDictionary fromJson(const QByteArray& json);

    /// The text under `key`; empty when it is missing or not a text.
    std::optional<QString> text(const std::string& key) const;

    /// "CFBundleShortVersionString", or "0".
    QString shortVersion() const;

    /// "CFBundleVersion", or "0".
    QString buildNumber() const;

private:
    std::map<std::string, QString> m_texts;
};

}
