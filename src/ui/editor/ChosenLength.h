// Lengths that a person gave to a part of the window by hand, kept from one start to the next.
#pragma once

#include <optional>
#include <string_view>

namespace pointloom {

class UserDefaults;

/// Points; empty while nobody has chosen, and where what is stored is no sensible length.
std::optional<int> chosenLength(const UserDefaults& defaults, std::string_view key);

/// Settings that cannot be written keep the choice before.
void rememberLength(UserDefaults& defaults, std::string_view key, std::optional<int> length);

}
