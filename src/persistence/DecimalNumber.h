// Parsing of numbers independent of the desktop's language.
#pragma once

#include <charconv>
#include <cmath>
#include <concepts>
#include <optional>
#include <string_view>

namespace pointloom {

/// The decimal number that is the whole of `text`, an optional sign first: "3", "-0.5", "+1e3". Empty
/// for other forms (spaces, hexadecimal, separators), for what does not fit, for infinities and nan.
template <class Number>
requires std::same_as<Number, double> || std::signed_integral<Number> std::optional<Number>
parseDecimal(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    if constexpr (std::same_as<Number, double>) {
        if (!std::isfinite(number))
            return std::nullopt;
    }
    return number;
}

}
