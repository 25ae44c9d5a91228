// What the person chose in the preferences, as it is kept in the settings.
#pragma once

#include "ui/style/Theme.h"

#include <string_view>

namespace pointloom {

class UserDefaults;

namespace Preferences {

constexpr std::string_view themeKey = "theme"; // raw value of a ThemeChoice
constexpr std::string_view hardwareDecodingKey = "hardwareDecoding";
constexpr std::string_view crashReportsKey = "crashReportingEnabled";

// What cannot be read is as it is at first; none of these throws.

/// Dark at first.
ThemeChoice theme(const UserDefaults& defaults) noexcept;
/// Off at first.
bool isSet(const UserDefaults& defaults, std::string_view key) noexcept;

}

}
