// Tells whether a file is still the one that was seen before.
#pragma once

#include "json/JsonFields.h"

#include <cstdint>
#include <QString>
#include <tuple>

namespace pointloom {

struct FileFingerprint {
    QString path;              // absolute
    std::int64_t size = 0;     // bytes
    std::int64_t modified = 0; // seconds since 1970, UTC
    QString hash;              // SHA-256 of the first and the last MiB, hexadecimal

    bool operator==(const FileFingerprint&) const = default;

    /// Throws ExportError when the file cannot be read.
    static FileFingerprint of(const QString& path);

    /// Throws ExportError, which names the file, when it is gone or is another one.
    void requireUnchanged() const;

    static constexpr auto jsonFields() {
        using Self = FileFingerprint;
        return std::tuple{json::field("path", &Self::path), json::field("size", &Self::size),
                          json::field("modified", &Self::modified), json::field("hash", &Self::hash)};
    }
};

}
