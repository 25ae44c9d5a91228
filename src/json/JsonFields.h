// The names that values have in JSON, each given once: the cases of an enumeration by `RawValues`, the fields
// of a record by
//
//     static constexpr auto jsonFields() {
//         return std::tuple{json::field("start", &CutZone::start), json::field("end", &CutZone::end)};
//     }
//
// This is all that a record's header needs; JsonCoding.h and JsonDocument.h do the coding.
#pragma once

#include <algorithm>
#include <array>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>
#include <tuple>
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

namespace json {

using Value = nlohmann::json;                // keys sorted; decoded
using OrderedValue = nlohmann::ordered_json; // keys in the order of writing; encoded

class Path;

template <class Record, class Member>
struct Field {
    std::string_view key;
    Member Record::*member;
};

template <class Record, class Member>
constexpr Field<Record, Member> field(std::string_view key, Member Record::*member) {
    return {key, member};
}

template <class T>
concept JsonRecord = requires {
    T::jsonFields();
};

/// Converts one type to a tree and back; specialise it for a type that is neither a record nor in
/// JsonCoding.h.
template <class T>
struct Codec;

/// Appends one type to a text; specialise it beside a Codec where the detour over a tree, which all other
/// types take, is too slow.
template <class T>
struct Writer;

}

}
