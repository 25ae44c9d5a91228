// Enumerations with a text for each case, which is the form that is persisted.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace pointloom {

/// Specialised beside each enumeration with a `table` of (case, raw value) in declaration order.
template <class Enumeration>
struct RawValues;

template <class Enumeration>
concept HasRawValues = requires {
    RawValues<Enumeration>::table.size();
};

/// The persisted text of a case.
template <HasRawValues Enumeration>
constexpr std::string_view rawValue(Enumeration value) {
    for (const auto& [candidate, text] : RawValues<Enumeration>::table) {
        if (candidate == value)
            return text;
    }
    return {};
}

/// The case whose raw value is exactly `text`; empty for any other text.
template <HasRawValues Enumeration>
constexpr std::optional<Enumeration> fromRawValue(std::string_view text) {
    for (const auto& [candidate, candidateText] : RawValues<Enumeration>::table) {
        if (candidateText == text)
            return candidate;
    }
    return std::nullopt;
}

/// Every case in declaration order.
template <HasRawValues Enumeration>
constexpr auto allCases() {
    constexpr auto& table = RawValues<Enumeration>::table;
    std::array<Enumeration, table.size()> cases{};
    for (std::size_t i = 0; i < table.size(); ++i)
        cases[i] = table[i].first;
    return cases;
}

}
