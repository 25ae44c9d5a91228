#include "ui/editor/ChosenLength.h"

#include "persistence/UserDefaults.h"

namespace pointloom {

std::optional<int> chosenLength(const UserDefaults& defaults, std::string_view key) {
    constexpr int longest = 10'000; // points; no screen is larger
    try {
        const int length = defaults.data(key).value_or(QByteArray()).toInt();
        return length > 0 && length <= longest ? std::optional(length) : std::nullopt;
    } catch (const FileError&) {
        return std::nullopt;
    }
}

void rememberLength(UserDefaults& defaults, std::string_view key, std::optional<int> length) {
    if (!length || length == chosenLength(defaults, key))
        return;
    try {
        defaults.setData(key, QByteArray::number(*length));
    } catch (const FileError&) {
        // The next start has the length before.
    }
}

}
