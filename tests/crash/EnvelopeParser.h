// Reads an envelope as strictly as a collector may.
#pragma once

#include "json/JsonDocument.h"

#include <QByteArray>
#include <stdexcept>

namespace pointloom::test {

struct ParsedEnvelope {
    json::Value header;
    json::Value itemHeader;
    json::Value event;
};

/// Throws for anything but two header lines and one item of exactly the length announced.
inline ParsedEnvelope parseEnvelope(const QByteArray& bytes) {
    const qsizetype firstEnd = bytes.indexOf('\n');
    const qsizetype secondEnd = bytes.indexOf('\n', firstEnd + 1);
    if (firstEnd < 0 || secondEnd < 0)
        throw std::runtime_error("two header lines are missing");
    ParsedEnvelope envelope;
    envelope.header = json::parse(bytes.left(firstEnd));
    envelope.itemHeader = json::parse(bytes.mid(firstEnd + 1, secondEnd - firstEnd - 1));
    const qsizetype length = envelope.itemHeader.at("length").get<qsizetype>();
    const QByteArray rest = bytes.mid(secondEnd + 1);
    if (rest.size() != length + 1 || rest.back() != '\n')
        throw std::runtime_error("the item is not as long as announced, or does not end its line");
    envelope.event = json::parse(rest.left(length));
    if (envelope.header.size() != 2 || envelope.itemHeader.size() != 2 ||
        envelope.itemHeader.at("type") != "event")
        throw std::runtime_error("the headers hold something else");
    return envelope;
}

}
