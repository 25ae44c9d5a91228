#include "ui/common/KeyFile.h"

#include "persistence/DocumentFile.h"
#include "json/JsonDocument.h"

namespace pointloom {

namespace {

constexpr int keyFileVersion = 1;
constexpr json::ParseLimits limits{.bytes = 256 * 1024, .values = 10'000};

// Details of faults are in English, as those of every file.
constexpr const char* noKey = " is not a key such as \"Ctrl+Shift+E\"";     // not translated
constexpr const char* reservedKey = " cannot be given to a command";        // not translated
constexpr const char* lonelyKey = " needs Ctrl, or must be a function key"; // not translated
constexpr const char* unknownVersion = " is not known, expected 1";         // not translated
constexpr const char* noObject = "expected an object";                      // not translated
constexpr const char* givenBefore = " is already the key of ";              // not translated

QString keyText(QKeyCombination key) {
    return QKeySequence(key).toString(QKeySequence::PortableText);
}

QKeyCombination decodeKey(const QString& text, CommandGroup group, const json::Path& place) {
    const std::string quoted = json::inQuotes(text.toStdString());
    const auto sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown)
        throw json::DecodingError(place, quoted + noKey);
    if (const auto fault = faultOf(sequence[0], group))
        throw json::DecodingError(place, quoted + (fault == KeyFault::reserved ? reservedKey : lonelyKey));
    return sequence[0];
}

}

KeyFile keysFromJson(const QByteArray& text) {
    const json::Value root = json::parse(text, limits);
    const json::Path top;
    const int version = json::decode<int>(json::requiredMember(root, "version", top), top.key("version"));
    if (version != keyFileVersion)
        throw json::DecodingError(top.key("version"), std::to_string(version) + unknownVersion);
    const json::Value& commands = json::requiredMember(root, "keys", top);
    const json::Path keysPlace = top.key("keys");
    if (!commands.is_object())
        throw json::DecodingError(keysPlace, noObject);
    KeyFile file;
    std::map<QKeyCombination, std::string,
             decltype([](QKeyCombination a, QKeyCombination b) { return a.toCombined() < b.toCombined(); })>
        owners;
    for (const auto& [name, list] : commands.items()) {
        const json::Path commandPlace = keysPlace.key(name);
        const auto texts = json::decode<std::vector<QString>>(list, commandPlace);
        const auto command = fromRawValue<Command>(name);
        if (!command || commandRow(*command).fixedKeys) {
            file.unknown << QString::fromStdString(json::printable(name));
            continue;
        }
        CommandKeys::Keys& keys = file.chosen[*command];
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const json::Path place = commandPlace.index(static_cast<std::ptrdiff_t>(i));
            const QKeyCombination key = decodeKey(texts[i], commandRow(*command).group, place);
            const auto [owner, isNew] = owners.emplace(key, name);
            if (!isNew)
                throw json::DecodingError(place, json::inQuotes(texts[i].toStdString()) + givenBefore +
                                                     owner->second);
            keys << key;
        }
    }
    return file;
}

QByteArray keysAsJson(const CommandKeys::Chosen& chosen) {
    json::OrderedValue commands = json::OrderedValue::object();
    for (const auto& [command, keys] : chosen) {
        json::OrderedValue& list = commands[std::string(rawValue(command))] = json::OrderedValue::array();
        for (const QKeyCombination key : keys)
            list.push_back(keyText(key).toStdString());
    }
    return json::prettySorted({{"version", keyFileVersion}, {"keys", std::move(commands)}});
}

KeyFile readKeyFile(const QString& path) {
    try {
        return keysFromJson(readDocument(path, limits.bytes));
    } catch (const json::DecodingError& error) {
        throw DocumentError(path, QString::fromUtf8(error.what()));
    }
}

void writeKeyFile(const QString& path, const CommandKeys::Chosen& chosen) {
    writeDocument(path, keysAsJson(chosen));
}

}
