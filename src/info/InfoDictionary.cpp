#include "info/InfoDictionary.h"

#include "json/JsonDocument.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pointloom {

namespace {

constexpr qsizetype largestFile = 64 * 1024;

}

InfoDictionary InfoDictionary::ofApplication() {
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString beside = folder.filePath(QStringLiteral("Info.json"));
    if (QFileInfo(beside).isFile())
        return fromFile(beside);
    return fromFile(folder.filePath(QStringLiteral("../share/pointloom/Info.json")));
}

InfoDictionary InfoDictionary::fromFile(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return fromJson(file.read(largestFile + 1));
}

InfoDictionary InfoDictionary::fromJson(const QByteArray& json) {
    InfoDictionary dictionary;
    try {
        const json::Value value = json::parse(json, {.bytes = largestFile});
        if (value.is_object()) {
            for (const auto& [key, text] : value.items()) {
                if (text.is_string())
                    dictionary.m_texts[key] = QString::fromStdString(text.get<std::string>());
            }
        }
    } catch (const json::DecodingError&) {
        // A broken file reads as an empty one.
    }
    return dictionary;
}

std::optional<QString> InfoDictionary::text(const std::string& key) const {
    const auto found = m_texts.find(key);
    return found == m_texts.end() ? std::nullopt : std::optional(found->second);
}

QString InfoDictionary::shortVersion() const {
    return text("CFBundleShortVersionString").value_or(QStringLiteral("0"));
}

QString InfoDictionary::buildNumber() const {
    return text("CFBundleVersion").value_or(QStringLiteral("0"));
}

}
