#include "json/JsonCoding.h"

#include <algorithm>

namespace pointloom::json {

std::string Path::text() const {
    if (!m_parent)
        return {};
    std::string prefix = m_parent->text();
    if (m_index >= 0)
        return prefix + '[' + std::to_string(m_index) + ']';
    if (!prefix.empty())
        prefix += '.';
    return prefix + std::string(m_key);
}

DecodingError::DecodingError(const Path& place, const std::string& fault)
    : std::runtime_error(place.text().empty() ? fault : place.text() + ": " + fault) {}

DecodingError::DecodingError(const std::string& message)
    : std::runtime_error(message) {}

std::string printable(std::string_view text, std::size_t longest) {
    std::string result;
    std::size_t end = std::min(text.size(), longest);
    const auto continuesCharacter = [&](std::size_t at) {
        return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U; // UTF-8
    };
    while (end > 0 && continuesCharacter(end))
        --end;
    for (std::size_t i = 0; i < end; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool startsC1 = byte == 0xC2U && i + 1 < end && static_cast<unsigned char>(text[i + 1]) < 0xA0U;
        if (startsC1)
            ++i; // U+0080 to U+009F, which terminals obey too
        result += byte < 0x20 || byte == 0x7F || startsC1 ? '?' : text[i];
    }
    if (end < text.size())
        result += "...";
    return result;
}

std::string inQuotes(std::string_view text) {
    return '"' + printable(text) + '"';
}

}
