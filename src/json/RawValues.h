// Enumerations with a text for each case, which is the form that is persisted.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace pointloom {

/// Specialised beside each enumeration with a `table` of (case, raw value) in declaration order.
template <class Enumeration>
struct RawValues;

/// The table of an enumeration whose raw values are the names of its cases; `names` separated by commas.
template <class Enumeration, std::size_t count>
constexpr auto tableOfNames(std::string_view names) {
    std::array<std::pair<Enumeration, std::string_view>, count> table{};
    for (std::size_t i = 0; i < count; ++i) {
        const std::string_view name = names.substr(0, names.find(','));
        table[i] = {static_cast<Enumeration>(i), name};
        names.remove_prefix(std::min(names.size(), name.size() + 2)); // the comma and a space
    }
    return table;
}

/// Declares an enumeration in the namespace pointloom whose raw values are the names of its cases.
#define POINTLOOM_NAMED_ENUM(Name, ...)                                                                      \
    enum class Name { __VA_ARGS__ };                                                                         \
    template <>                                                                                              \
    struct RawValues<Name> {                                                                                 \
        static constexpr std::string_view names = #__VA_ARGS__;                                              \
        static constexpr std::size_t count = 1 + std::ranges::count(names, ',');                             \
        static constexpr auto table = tableOfNames<Name, count>(names);                                      \
    }

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
