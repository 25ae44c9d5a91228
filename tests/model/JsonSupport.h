// Short forms for JSON in tests.
#pragma once

#include "json/JsonDocument.h"

#include <gtest/gtest.h>

namespace pointloom {

template <class Record>
Record decodeText(const char* text) {
    return json::decode<Record>(json::parse(text));
}

/// The message with which decoding fails; fails the test when it does not.
template <class Record>
std::string decodingFault(const char* text) {
    try {
        decodeText<Record>(text);
    } catch (const json::DecodingError& error) {
        return error.what();
    }
    ADD_FAILURE() << "decoded, but should not: " << text;
    return {};
}

template <class Record>
std::string compactText(const Record& record) {
    return json::compact(json::encode(record)).toStdString();
}

}
