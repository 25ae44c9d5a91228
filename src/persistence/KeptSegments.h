// The segments of exports that are kept for this user, and how much space they may take.
#pragma once

#include "export/segments/SegmentCache.h"
#include "persistence/UserDefaults.h"

namespace pointloom {

namespace KeptSegments {

/// Gigabytes; 20 until another limit was chosen, and when the settings cannot be read. 0 keeps nothing.
int limit(const UserDefaults& defaults) noexcept;

/// Throws FileError.
void setLimit(UserDefaults& defaults, int gigabytes);

/// The cache with its limit.
SegmentCache cache(const UserDefaults& defaults = UserDefaults());

}

}
