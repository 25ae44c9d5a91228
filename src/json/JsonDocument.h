// JSON as bytes: parsing within limits, and writing compactly, sorted, or straight from records.
#pragma once

#include "json/JsonCoding.h"

#include <charconv>
#include <QByteArray>

namespace pointloom::json {

/// Limits beyond which a text is refused.
struct ParseLimits {
    qsizetype bytes = 64 * 1024 * 1024;
    int depth = 32; // levels of nested objects and lists
    // Numbers, texts, objects, lists and the like at all levels: each takes up to 160 bytes of memory.
    std::int64_t values = 4'000'000;
};

/// Throws DecodingError that names the limit which `bytes`, JSON text, passes. Call it before writing a
/// text, so that it can be read again.
void requireWithin(const ParseLimits& limits, const QByteArray& bytes);

/// Parses UTF-8 text. Throws DecodingError that names line and column, or the limit that was passed.
Value parse(const QByteArray& bytes, const ParseLimits& limits = {});

/// Keys in the order of writing, no spaces: the form of the stored session.
QByteArray compact(const OrderedValue& value);

/// Keys sorted, indented by two spaces, a line break at the end: the form of documents.
QByteArray prettySorted(const OrderedValue& value);

/// Any type that has no Writer of its own goes through a tree.
template <class T>
struct Writer {
    static void append(QByteArray& text, const T& value) { text += compact(Codec<T>::encode(value)); }
};

/// Compact JSON, keys in declaration order. Throws EncodingError for what JSON cannot hold.
template <class T>
QByteArray write(const T& value) {
    QByteArray text;
    Writer<T>::append(text, value);
    return text;
}

/// A text in quotes, escaped. `utf8` is valid UTF-8.
void appendQuoted(QByteArray& text, QByteArrayView utf8);

template <std::signed_integral Integer>
struct Writer<Integer> {
    static void append(QByteArray& text, Integer value) { text += QByteArray::number(qlonglong{value}); }
};

template <>
struct Writer<double> {
    static void append(QByteArray& text, double value);
};

template <>
struct Writer<QString> {
    static void append(QByteArray& text, const QString& value) { appendQuoted(text, value.toUtf8()); }
};

template <>
struct Writer<QUuid> {
    static void append(QByteArray& text, const QUuid& value) {
        appendQuoted(text, value.toByteArray(QUuid::WithoutBraces));
    }
};

template <HasRawValues Enumeration>
struct Writer<Enumeration> {
    static void append(QByteArray& text, Enumeration value) { appendQuoted(text, rawValue(value)); }
};

template <class Element>
struct Writer<std::vector<Element>> {
    static void append(QByteArray& text, const std::vector<Element>& values) {
        char separator = '[';
        for (const Element& element : values) {
            text += separator;
            Writer<Element>::append(text, element);
            separator = ',';
        }
        text += values.empty() ? "[]" : "]";
    }
};

template <JsonRecord Record>
struct Writer<Record> {
    static void append(QByteArray& text, const Record& record) {
        const qsizetype start = text.size();
        const auto appendFields = [&](const auto&... fields) { (appendField(text, record, fields), ...); };
        std::apply(appendFields, Record::jsonFields());
        // Each field begins with a comma; the first one's is the place of the bracket.
        if (text.size() == start)
            text += ',';
        text[start] = '{';
        text += '}';
    }

private:
    template <class Member>
    static void appendField(QByteArray& text, const Record& record, const Field<Record, Member>& field) {
        appendMember(text, field.key, record.*field.member);
    }

    template <class Member>
    static void appendField(QByteArray& text, const Record& record,
                            const Field<Record, std::optional<Member>>& field) {
        if (const auto& member = record.*field.member)
            appendMember(text, field.key, *member);
    }

    template <class Member>
    static void appendMember(QByteArray& text, std::string_view key, const Member& member) {
        text += ',';
        appendQuoted(text, key);
        text += ':';
        Writer<Member>::append(text, member);
    }
};

}
