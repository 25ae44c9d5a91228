// JSON as bytes: bounded parsing, and the two ways of writing.
#pragma once

#include "json/JsonCoding.h"

#include <QByteArray>

namespace pointloom::json {

/// What a text may cost before it is refused.
struct ParseLimits {
    qsizetype bytes = 64 * 1024 * 1024;
    int depth = 32; // levels of nested objects and lists
    // Numbers, texts, objects, lists and the like at all levels: each takes up to 160 bytes of memory.
    std::int64_t values = 4'000'000;
};

/// Throws DecodingError that names the limit which `bytes`, JSON text, passes. Whoever writes a text asks
/// this first, so that it can be read again.
void requireWithin(const ParseLimits& limits, const QByteArray& bytes);

/// Parses UTF-8 text. Throws DecodingError that names line and column, or the limit that was passed.
Value parse(const QByteArray& bytes, const ParseLimits& limits = {});

/// Keys in the order of writing, no blanks: what the autosave stores.
QByteArray compact(const OrderedValue& value);

/// Keys sorted, indented by two blanks, a line break at the end: what documents store.
QByteArray prettySorted(const OrderedValue& value);

}
