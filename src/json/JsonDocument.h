// JSON as bytes: bounded parsing, and the two ways of writing.
#pragma once

#include "json/JsonCoding.h"

#include <QByteArray>

namespace pointloom::json {

/// What a text may cost before it is refused.
struct ParseLimits {
    qsizetype bytes = 64 * 1024 * 1024;
    int depth = 32; // levels of nested objects and lists
};

/// Parses UTF-8 text. Throws DecodingError that names line and column, or the limit that was passed.
Value parse(const QByteArray& bytes, const ParseLimits& limits = {});

/// Keys in the order of writing, no blanks: what the autosave stores.
QByteArray compact(const OrderedValue& value);

/// Keys sorted, indented by two blanks, a line break at the end: what documents store.
QByteArray prettySorted(const OrderedValue& value);

}
