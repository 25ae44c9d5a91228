// Interface between a fuzz target and libFuzzer, or the test that replays the corpus; and what all targets
// check.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <QByteArray>
#include <QStringDecoder>
#include <string_view>

/// Tries one input. Returns 0; anything but an error that the tried code promises ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace pointloom::fuzz {

/// The input without a copy; `data` must outlive it.
inline QByteArray bytesOf(const std::uint8_t* data, std::size_t size) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

/// Ends the process, naming `fact`, when it does not hold.
inline void require(bool holds, const char* fact) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", fact);
    std::abort();
}

/// Messages are one bounded line of UTF-8, and say something after the name of what was read.
inline void requireReadable(std::string_view message, std::string_view name = {}) {
    constexpr std::size_t longest = 600; // bytes
    require(message.size() > name.size() && message.starts_with(name),
            "a message names its file and a reason");
    require(message.size() <= longest, "a message is bounded");
    for (const char c : message)
        require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7F, "a message has no control characters");
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(QByteArrayView(message.data(), static_cast<qsizetype>(message.size())));
    require(!decoder.hasError() && !decoded.isEmpty(), "a message is valid UTF-8");
}

}
