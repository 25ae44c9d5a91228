// Changes JSON one value at a time. Bytes changed blindly hardly ever leave JSON that is read past its
// syntax.
#include <algorithm>
#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t largestSize);

namespace {

using Json = nlohmann::json;
using Random = std::minstd_rand;

std::size_t choice(Random& random, std::size_t count) {
    return random() % count;
}

/// Copies and destruction of values are recursive.
bool isShallow(std::string_view text) {
    constexpr auto mostBrackets = 64;
    int depth = 0;
    int deepest = 0;
    for (const char c : text) {
        depth += c == '[' || c == '{' ? 1 : c == ']' || c == '}' ? -1 : 0;
        deepest = std::max(deepest, depth);
    }
    return deepest < mostBrackets;
}

void collect(Json& value, std::vector<Json*>& values) {
    values.push_back(&value);
    if (value.is_structured()) {
        for (Json& inner : value)
            collect(inner, values);
    }
}

std::string mutated(const std::string& text) {
    constexpr std::size_t mostMore = 64;
    std::vector<std::uint8_t> bytes(text.begin(), text.end());
    bytes.resize(text.size() + mostMore);
    const std::size_t size = LLVMFuzzerMutate(bytes.data(), text.size(), bytes.size());
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)};
}

const Json& awkwardValue(Random& random) {
    static const Json values = {nullptr,
                                true,
                                false,
                                0,
                                -1,
                                2,
                                1e308,
                                -0.0,
                                0.1,
                                5e-324,
                                9007199254740993,
                                std::numeric_limits<std::int64_t>::min(),
                                std::numeric_limits<std::uint64_t>::max(),
                                "",
                                "\xF0\x9F\x8E\xBE",
                                std::string(200, 'x'),
                                Json::array(),
                                Json::object()};
    return values[choice(random, values.size())];
}

void changeContainer(Json& container, Random& random) {
    if (container.empty())
        return;
    auto at = container.begin();
    std::advance(at, static_cast<std::ptrdiff_t>(choice(random, container.size())));
    const Json copy = *at;
    switch (choice(random, 3)) {
    case 0:
        container.erase(at);
        break;
    case 1:
        if (container.is_array())
            container.push_back(copy);
        else
            container[mutated(at.key())] = copy;
        break;
    default:
        if (container.is_object())
            container.erase(at.key());
        else
            std::swap(container.front(), *at);
    }
}

void change(Json& value, const std::vector<Json*>& values, Random& random) {
    constexpr std::size_t shareOfForeignValues = 3; // one in so many
    if (choice(random, shareOfForeignValues) == 0) {
        const Json foreign =
            choice(random, 2) == 0 ? *values[choice(random, values.size())] : awkwardValue(random);
        value = foreign;
    } else if (value.is_structured()) {
        changeContainer(value, random);
    } else if (value.is_string()) {
        value = mutated(value.get_ref<const std::string&>());
    } else if (value.is_number_integer()) {
        value = value.get<std::int64_t>() ^ (std::int64_t{1} << choice(random, 63));
    } else if (value.is_number()) {
        value = value.get<double>() * (static_cast<double>(choice(random, 5)) - 2.5);
    } else {
        value = awkwardValue(random);
    }
}

}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t largestSize,
                                               unsigned seed) {
    Random random(seed);
    constexpr std::size_t shareOfBlindChanges = 4; // one in so many
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (choice(random, shareOfBlindChanges) == 0 || !isShallow(text))
        return LLVMFuzzerMutate(data, size, largestSize);
    Json document = Json::parse(text, nullptr, false);
    if (document.is_discarded())
        return LLVMFuzzerMutate(data, size, largestSize);

    std::vector<Json*> values;
    collect(document, values);
    change(*values[choice(random, values.size())], values, random);
    const std::string written = document.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (written.size() > largestSize)
        return LLVMFuzzerMutate(data, size, largestSize);
    std::ranges::copy(written, data);
    return written.size();
}
