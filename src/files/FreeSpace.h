// Free space of disks.
#pragma once

#include <cstdint>
#include <optional>
#include <QString>

namespace pointloom {

/// Bytes that this user can still write to the disk of the folder; empty when it does not tell.
std::optional<std::int64_t> freeBytes(const QString& folder);

}
