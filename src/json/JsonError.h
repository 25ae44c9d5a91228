// Errors of reading and writing JSON, with the place of the fault.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace pointloom::json {

/// The place of a value inside a document while it is being decoded, such as `markers[3].score.type`.
/// A chain of stack objects: each level points at the level above it and outlives the levels below.
class Path {
public:
    Path() = default;

    Path key(std::string_view name) const { return Path(this, name, -1); }
    Path index(std::ptrdiff_t position) const { return Path(this, {}, position); }

    /// Keys joined by dots, indices in square brackets; empty at the root.
    std::string text() const;

private:
    Path(const Path* parent, std::string_view key, std::ptrdiff_t index)
        : m_parent(parent)
        , m_key(key)
        , m_index(index) {}

    const Path* m_parent = nullptr;
    std::string_view m_key;
    std::ptrdiff_t m_index = -1;
};

/// A text that is not JSON, or JSON that is not the expected record.
/// `what()` names the place and the fault: `markers[3].score.type: unknown value "golf"`.
class DecodingError : public std::runtime_error {
public:
    DecodingError(const Path& place, const std::string& fault);
    explicit DecodingError(const std::string& message);
};

/// A value that JSON cannot hold, such as a number that is not finite.
class EncodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `text` made fit for one line of a message: cut after `longest` bytes of UTF-8, control characters
/// replaced.
std::string printable(std::string_view text, std::size_t longest = 60);

/// The printable form of `text` in double quotes.
std::string inQuotes(std::string_view text);

}
