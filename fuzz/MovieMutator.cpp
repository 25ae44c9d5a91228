// Changes a movie's boxes one at a time. Most bytes of a movie are samples, and a byte more or less anywhere
// moves all that follows: without this, hardly an input would open.
#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <span>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t largestSize);

namespace {

using Bytes = std::span<std::uint8_t>;

constexpr std::size_t headerSize = 8; // bytes: size and type, ISO/IEC 14496-12, 4.2

bool holdsBoxes(std::string_view type) {
    constexpr std::array containers = {"moov", "trak", "mdia", "minf", "stbl", "edts", "udta",
                                       "dinf", "mvex", "moof", "traf", "gmhd", "wave"};
    return std::find(containers.begin(), containers.end(), type) != containers.end();
}

/// Adds what every box in `bytes` holds to `contents`, the boxes inside boxes too.
void collectContents(Bytes bytes, std::vector<Bytes>& contents) {
    while (bytes.size() >= headerSize) {
        const std::size_t size = (std::size_t{bytes[0]} << 24U) | (std::size_t{bytes[1]} << 16U) |
                                 (std::size_t{bytes[2]} << 8U) | std::size_t{bytes[3]};
        if (size < headerSize || size > bytes.size())
            return;
        const Bytes content = bytes.subspan(headerSize, size - headerSize);
        if (!content.empty())
            contents.push_back(content);
        if (holdsBoxes({reinterpret_cast<const char*>(bytes.data()) + 4, 4}))
            collectContents(content, contents);
        bytes = bytes.subspan(size);
    }
}

}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t largestSize,
                                               unsigned seed) {
    std::minstd_rand random(seed);
    std::vector<Bytes> contents;
    collectContents({data, size}, contents);
    constexpr unsigned shareOfBlindChanges = 8; // one in so many
    if (contents.empty() || random() % shareOfBlindChanges == 0)
        return LLVMFuzzerMutate(data, size, largestSize);

    const Bytes content = contents[random() % contents.size()];
    std::vector<std::uint8_t> changed(content.begin(), content.end());
    const std::size_t kept = LLVMFuzzerMutate(changed.data(), changed.size(), changed.size());
    std::copy_n(changed.begin(), kept, content.begin());
    return size;
}
