// How a value record names the fields of its JSON, once:
//
//     static constexpr auto jsonFields() {
//         return std::tuple{json::field("start", &CutZone::start), json::field("end", &CutZone::end)};
//     }
//
// All that a record's header needs; coding itself is in JsonCoding.h and JsonWriter.h.
#pragma once

#include "json/RawValues.h"

#include <nlohmann/json_fwd.hpp>
#include <string_view>
#include <tuple>

namespace pointloom::json {

using Value = nlohmann::json;                // keys sorted; what decoding reads
using OrderedValue = nlohmann::ordered_json; // keys in the order of writing; what encoding makes

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

/// How one type is turned into a tree and back; specialise it for a type that is neither a record nor in
/// JsonCoding.h.
template <class T>
struct Codec;

/// How one type is appended to a text; specialise it beside a Codec where the way through a tree, which
/// any other type takes, costs too much.
template <class T>
struct Writer;

}
