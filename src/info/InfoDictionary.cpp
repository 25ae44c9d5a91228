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
        if (value.is_object())
            dictionary.m_json = json;
    } catch (const json::DecodingError&) {
        // A broken dictionary says nothing.
    }
    return dictionary;
}

std::optional<QString> InfoDictionary::text(const char* key) const {
    const json::Value value = json::parse(m_json);
    const auto found = value.find(key);
    if (found == value.end() || !found->is_string())
        return std::nullopt;
    return QString::fromStdString(found->get<std::string>());
}

QString InfoDictionary::shortVersion() const {
    return text("CFBundleShortVersionString").value_or(QStringLiteral("0"));
}

QString InfoDictionary::buildNumber() const {
    return text("CFBundleVersion").value_or(QStringLiteral("0"));
}

}
