#include "persistence/KeptSegments.h"

#include <algorithm>

namespace pointloom::KeptSegments {

namespace {

constexpr std::string_view limitKey = "keptSegmentsLimit";
constexpr qint64 gigabyte = 1'000'000'000; // bytes
constexpr int largestLimit = 100'000;      // gigabytes

}

int limit(const UserDefaults& defaults) noexcept {
    constexpr int usual = static_cast<int>(SegmentCache::usualLimit / gigabyte);
    try {
        bool isNumber = false;
        const int stored = defaults.data(limitKey).value_or(QByteArray()).toInt(&isNumber);
        return isNumber ? std::clamp(stored, 0, largestLimit) : usual;
    } catch (const FileError&) {
        return usual;
    }
}

void setLimit(UserDefaults& defaults, int gigabytes) {
    defaults.setData(limitKey, QByteArray::number(gigabytes));
}

SegmentCache cache(const UserDefaults& defaults) {
    return SegmentCache(SegmentCache::standardFolder(), limit(defaults) * gigabyte);
}

}
