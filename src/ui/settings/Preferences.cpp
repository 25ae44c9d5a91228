#include "ui/settings/Preferences.h"

#include "persistence/UserDefaults.h"

namespace pointloom::Preferences {

ThemeChoice theme(const UserDefaults& defaults) noexcept {
    try {
        const auto stored = defaults.data(themeKey);
        const auto choice = stored ? fromRawValue<ThemeChoice>(stored->toStdString()) : std::nullopt;
        return choice.value_or(ThemeChoice::dark);
    } catch (const std::exception&) {
        return ThemeChoice::dark;
    }
}

bool isSet(const UserDefaults& defaults, std::string_view key) noexcept {
    try {
        return defaults.boolean(key);
    } catch (const std::exception&) {
        return false;
    }
}

}
