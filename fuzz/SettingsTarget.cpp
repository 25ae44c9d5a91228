// Any bytes as a settings file, as a value kept in one, and as the stored session. A value set is the value
// read, and no other changes.
#include "FuzzTarget.h"
#include "persistence/Persistence.h"
#include "persistence/UserDefaults.h"
#include "json/JsonDocument.h"

#include <array>

namespace pointloom::fuzz {

namespace {

constexpr std::array<std::string_view, 3> keys = {Persistence::sessionKey, "a", "b-2"};

void trySettings(const QByteArray& text, const QByteArray& value) {
    const QByteArray changed = IniText::withValue(text, keys[1], IniText::fromData(value));
    const auto read = IniText::value(changed, keys[1]);
    require(read && IniText::toData(*read) == value, "a value reads as it was set");
    const QByteArray removed = IniText::withValue(changed, keys[1], std::nullopt);
    require(!IniText::value(removed, keys[1]), "a removed value is absent");
    for (const std::string_view other : {keys[0], keys[2]}) {
        require(IniText::value(changed, other) == IniText::value(text, other),
                "setting one changes no other");
        require(IniText::value(removed, other) == IniText::value(text, other),
                "removing one changes no other");
    }
}

void trySession(const QByteArray& bytes) {
    try {
        const json::Value value = json::parse(bytes);
        try {
            const auto snapshot = json::decode<Persistence::Snapshot>(value);
            require(json::decode<Persistence::Snapshot>(json::parse(json::write(snapshot))) == snapshot,
                    "a session reads as it was written");
        } catch (const json::DecodingError& error) {
            requireReadable(error.what());
            const auto migrated = json::decode<Persistence::LegacySnapshot>(value).migrated();
            require(json::decode<Persistence::Snapshot>(json::parse(json::write(migrated))) == migrated,
                    "an older session reads as it was written");
        }
    } catch (const json::DecodingError& error) {
        requireReadable(error.what());
    }
}

}

}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pointloom;
    const QByteArray bytes = fuzz::bytesOf(data, size);
    fuzz::trySettings(bytes, "one value");
    fuzz::trySettings("[General]\nb-2=kept\n", bytes);
    fuzz::trySession(IniText::toData(IniText::value(bytes, Persistence::sessionKey).value_or(bytes)));
    return 0;
}
