// Converts value records to JSON trees and back. An absent optional field is left out; a missing required
// key, a value of the wrong type or an unknown raw value throws DecodingError with its place. Unknown keys
// are ignored. Nothing has a default on reading.
#pragma once

#include "json/JsonFields.h"

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace pointloom::json {

/// The place of a value inside a document while it is being decoded, such as `markers[3].score.type`.
/// A chain of stack objects: each level points at the level above it and outlives the levels below.
class Path {
public:
    Path() = default;

    Path key(std::string_view name) const { return Path(this, name, -1); }
    Path index(std::ptrdiff_t position) const { return Path(this, {}, position); }

    /// Keys joined by dots, indices in square brackets; empty at the root.
    std::string text() const;

private:
    Path(const Path* parent, std::string_view key, std::ptrdiff_t index)
        : m_parent(parent)
        , m_key(key)
        , m_index(index) {}

    const Path* m_parent = nullptr;
    std::string_view m_key;
    std::ptrdiff_t m_index = -1;
};

/// A text that is not JSON, or JSON that is not the expected record.
/// `what()` names the place and the fault: `markers[3].score.type: unknown value "golf"`.
class DecodingError : public std::runtime_error {
public:
    DecodingError(const Path& place, const std::string& fault);
    explicit DecodingError(const std::string& message);
};

/// A value that JSON cannot hold, such as a number that is not finite.
class EncodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `text` for one line of a message: cut after `longest` bytes of UTF-8, control characters
/// replaced.
std::string printable(std::string_view text, std::size_t longest = 60);

/// The printable form of `text` in double quotes.
std::string inQuotes(std::string_view text);

template <class T>
OrderedValue encode(const T& value) {
    return Codec<T>::encode(value);
}

template <class T>
T decode(const Value& value, const Path& path = {}) {
    return Codec<T>::decode(value, path);
}

/// The member `key` of an object; throws when `object` is no object or has no such key.
inline const Value& requiredMember(const Value& object, std::string_view key, const Path& path) {
    if (!object.is_object())
        throw DecodingError(path, "expected an object");
    const auto found = object.find(key);
    if (found == object.end())
        throw DecodingError(path.key(key), "missing");
    return *found;
}

template <>
struct Codec<bool> {
    static OrderedValue encode(bool value) { return value; }
    static bool decode(const Value& value, const Path& path) {
        if (!value.is_boolean())
            throw DecodingError(path, "expected true or false");
        return value.get<bool>();
    }
};

template <std::signed_integral Integer>
struct Codec<Integer> {
    static OrderedValue encode(Integer value) { return value; }
    static Integer decode(const Value& value, const Path& path) {
        if (value.is_number_unsigned()) {
            const auto number = value.get<std::uint64_t>();
            if (std::in_range<Integer>(number))
                return static_cast<Integer>(number);
        } else if (value.is_number_integer()) {
            const auto number = value.get<std::int64_t>();
            if (std::in_range<Integer>(number))
                return static_cast<Integer>(number);
        } else if (value.is_number_float()) {
            // Some writers put whole numbers as 3.0.
            const double number = value.get<double>();
            constexpr double limit = 9007199254740992.0; // 2^53: every whole number below is exact
            if (std::trunc(number) == number && std::abs(number) < limit &&
                std::in_range<Integer>(static_cast<std::int64_t>(number)))
                return static_cast<Integer>(number);
        } else {
            throw DecodingError(path, "expected an integer");
        }
        throw DecodingError(path, "expected an integer of " + std::to_string(sizeof(Integer) * 8) + " bits");
    }
};

template <>
struct Codec<double> {
    static OrderedValue encode(double value) {
        if (!std::isfinite(value))
            throw EncodingError("a number that is not finite cannot be written as JSON");
        return value;
    }
    static double decode(const Value& value, const Path& path) {
        if (!value.is_number())
            throw DecodingError(path, "expected a number");
        return value.get<double>();
    }
};

template <>
struct Codec<QString> {
    static OrderedValue encode(const QString& value) { return value.toStdString(); }
    static QString decode(const Value& value, const Path& path) {
        if (!value.is_string())
            throw DecodingError(path, "expected a text");
        return QString::fromStdString(value.get_ref<const std::string&>());
    }
};

template <>
struct Codec<std::string> {
    static OrderedValue encode(const std::string& value) { return value; }
    static std::string decode(const Value& value, const Path& path) {
        return Codec<QString>::decode(value, path).toStdString();
    }
};

template <>
struct Codec<QUuid> {
    static OrderedValue encode(const QUuid& value) {
        return value.toString(QUuid::WithoutBraces).toStdString();
    }
    static QUuid decode(const Value& value, const Path& path) {
        const QString text = Codec<QString>::decode(value, path);
        constexpr qsizetype standardLength = 36;
        const QUuid id = QUuid::fromString(text);
        // QUuid also takes braces, and answers null for what it cannot read.
        const bool isNullText = text == QUuid().toString(QUuid::WithoutBraces);
        if (text.size() != standardLength || (id.isNull() && !isNullText))
            throw DecodingError(path, "expected a UUID, found " + inQuotes(text.toStdString()));
        return id;
    }
};

template <>
struct Codec<QUrl> {
    static OrderedValue encode(const QUrl& value) { return value.toString(QUrl::FullyEncoded).toStdString(); }
    static QUrl decode(const Value& value, const Path& path) {
        const QString text = Codec<QString>::decode(value, path);
        const QUrl url(text, QUrl::TolerantMode);
        if (text.isEmpty() || !url.isValid())
            throw DecodingError(path, "expected a URL, found " + inQuotes(text.toStdString()));
        return url;
    }
};

template <HasRawValues Enumeration>
struct Codec<Enumeration> {
    static OrderedValue encode(Enumeration value) { return std::string(rawValue(value)); }
    static Enumeration decode(const Value& value, const Path& path) {
        if (!value.is_string())
            throw DecodingError(path, "expected a text");
        const auto& text = value.get_ref<const std::string&>();
        if (const auto found = fromRawValue<Enumeration>(text))
            return *found;
        throw DecodingError(path, "unknown value " + inQuotes(text));
    }
};

template <class Element>
struct Codec<std::vector<Element>> {
    static OrderedValue encode(const std::vector<Element>& values) {
        OrderedValue array = OrderedValue::array();
        for (const Element& element : values)
            array.push_back(Codec<Element>::encode(element));
        return array;
    }
    static std::vector<Element> decode(const Value& value, const Path& path) {
        if (!value.is_array())
            throw DecodingError(path, "expected a list");
        std::vector<Element> elements;
        elements.reserve(value.size());
        for (std::size_t i = 0; i < value.size(); ++i)
            elements.push_back(Codec<Element>::decode(value[i], path.index(static_cast<std::ptrdiff_t>(i))));
        return elements;
    }
};

template <JsonRecord Record>
struct Codec<Record> {
    static OrderedValue encode(const Record& record) {
        OrderedValue object = OrderedValue::object();
        const auto encodeFields = [&](const auto&... fields) { (encodeField(object, record, fields), ...); };
        std::apply(encodeFields, Record::jsonFields());
        return object;
    }

    static Record decode(const Value& value, const Path& path) {
        if (!value.is_object())
            throw DecodingError(path, "expected an object");
        Record record{};
        const auto decodeFields = [&](const auto&... fields) {
            (decodeField(value, path, record, fields), ...);
        };
        std::apply(decodeFields, Record::jsonFields());
        return record;
    }

private:
    template <class Member>
    static void encodeField(OrderedValue& object, const Record& record, const Field<Record, Member>& field) {
        object[std::string(field.key)] = Codec<Member>::encode(record.*field.member);
    }

    template <class Member>
    static void encodeField(OrderedValue& object, const Record& record,
                            const Field<Record, std::optional<Member>>& field) {
        if (const auto& member = record.*field.member)
            object[std::string(field.key)] = Codec<Member>::encode(*member);
    }

    template <class Member>
    static void decodeField(const Value& value, const Path& path, Record& record,
                            const Field<Record, Member>& field) {
        const Path place = path.key(field.key);
        record.*field.member = Codec<Member>::decode(requiredMember(value, field.key, path), place);
    }

    template <class Member>
    static void decodeField(const Value& value, const Path& path, Record& record,
                            const Field<Record, std::optional<Member>>& field) {
        const auto found = value.find(field.key);
        // Other programs write null for an absent optional.
        if (found == value.end() || found->is_null())
            return;
        record.*field.member = Codec<Member>::decode(*found, path.key(field.key));
    }
};

}
