#include "persistence/LastMatch.h"

#include "persistence/UserDefaults.h"
#include "session/AppState.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <QDateTime>

namespace pointloom {

namespace {

constexpr std::string_view lastMatchKey = "lastMatch";

}

std::optional<LastMatch> LastMatch::of(const AppState& state) {
    const auto& match = state.matchConfig.value();
    if (!match)
        return std::nullopt;
    LastMatch last{.names = displayName(*match),
                   .videoPath = state.absentVideo,
                   .videoFiles = std::nullopt,
                   .projectPath = std::nullopt,
                   .scoreboardUserScale = state.scoreboardUserScale,
                   .editedAt = QDateTime::currentSecsSinceEpoch()};
    if (const auto& video = state.videoURL.value())
        last.videoPath = video->toLocalFile();
    if (const auto& files = state.videoFiles.value(); files.size() > 1) {
        const bool isAbsent = std::ranges::find(files, last.videoPath) != files.end();
        if (isAbsent)
            last.videoPath = files.front();
        last.videoFiles = files;
    }
    if (const auto& project = state.currentProjectURL.value())
        last.projectPath = project->toLocalFile();
    return last;
}

std::optional<LastMatch> readLastMatch(const UserDefaults& defaults) noexcept {
    try {
        const auto stored = defaults.data(lastMatchKey);
        return stored ? std::optional(json::decode<LastMatch>(json::parse(*stored))) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void storeLastMatch(UserDefaults& defaults, const std::optional<LastMatch>& match) noexcept {
    try {
        if (match)
            defaults.setData(lastMatchKey, json::compact(json::encode(*match)));
        else
            defaults.remove(lastMatchKey);
    } catch (const std::exception&) {
        // The next start offers the one before.
    }
}

}
