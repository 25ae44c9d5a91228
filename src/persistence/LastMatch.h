// What the stored session leaves out of the match that was edited last, so that the next start can go on with
// it.
#pragma once

#include "json/JsonFields.h"

#include <cstdint>
#include <optional>
#include <QString>
#include <tuple>
#include <vector>

namespace pointloom {

class AppState;
class UserDefaults;

/// A value of its own in the settings: the stored session has neither a video nor a document.
struct LastMatch {
    QString names;                                  // as in titles
    std::optional<QString> videoPath;               // paths are plain and absolute
    std::optional<std::vector<QString>> videoFiles; // of a split recording
    std::optional<QString> projectPath;             // of its document
    double scoreboardUserScale = 1;                 // the stored session's always starts at 1
    std::optional<std::int64_t> editedAt;           // seconds since 1970, UTC

    bool operator==(const LastMatch&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("names", &LastMatch::names),
                          json::field("videoPath", &LastMatch::videoPath),
                          json::field("videoFiles", &LastMatch::videoFiles),
                          json::field("projectPath", &LastMatch::projectPath),
                          json::field("scoreboardUserScale", &LastMatch::scoreboardUserScale),
                          json::field("editedAt", &LastMatch::editedAt)};
    }

    /// The session's, now; empty without a match.
    static std::optional<LastMatch> of(const AppState& state);
};

// Neither throws: settings that cannot be read or written have no last match, or keep the one before.

std::optional<LastMatch> readLastMatch(const UserDefaults& defaults) noexcept;
/// Removes it when there is none.
void storeLastMatch(UserDefaults& defaults, const std::optional<LastMatch>& match) noexcept;

}
