#include "persistence/ProjectSession.h"

#include "model/ScoringEngine.h"
#include "persistence/FileLookup.h"
#include "session/AppState.h"

#include <QFileInfo>

namespace pointloom {

namespace {

std::optional<QString> pathOf(const std::optional<QUrl>& url) {
    return url ? std::optional(url->path(QUrl::FullyDecoded)) : std::nullopt;
}

Screen firstUnfinished(const ProjectFile& project, const AppState& state) {
    if (!project.selectedTemplate)
        return project.selectedSport ? Screen::scoreboard : Screen::sport;
    if (!project.matchConfig)
        return Screen::match;
    return state.videoURL.value() ? Screen::editor : Screen::video;
}

// Where the file is now, absent when it is nowhere; noted in the report when that is not `storedPath`.
std::optional<QString> noted(OpenReport::Role role, const QString& storedPath,
                             const std::optional<FoundFile>& found, OpenReport& report) {
    if (!found) {
        report.missing.push_back({role, storedPath});
        return std::nullopt;
    }
    if (found->isBesideDocument)
        report.relocated.push_back({role, storedPath, found->path});
    return found->path;
}

}

ProjectFile projectFrom(const AppState& state) {
    const QPointF position = state.scoreboardPosition;
    ProjectFile project;
    project.selectedSport = state.selectedSport.value();
    project.selectedTemplate = state.selectedTemplate.value();
    project.matchConfig = state.matchConfig.value();
    project.markers = state.markers.value();
    project.initialScore = state.initialScore.value();
    project.scoreboardPositionX = position.x();
    project.scoreboardPositionY = position.y();
    project.scoreboardUserScale = state.scoreboardUserScale.value();
    project.trimStart = state.trimStart.value();
    project.trimEnd = state.trimEnd.value();
    project.watermarkPath = pathOf(state.watermarkURL.value());
    project.watermarkCorner = state.watermarkCorner.value();
    project.videoPath = pathOf(state.videoURL.value());
    return project;
}

void apply(const ProjectFile& project, AppState& state, const QUrl& sourceURL) {
    state.reset();
    state.cuts = std::vector<CutZone>{}; // a document has none, and a reset keeps those of the session
    state.selectedCutID = std::nullopt;
    state.selectedSport = project.selectedSport.value_or(SportID::tennis);
    state.selectedTemplate = project.selectedTemplate;
    state.matchConfig = project.matchConfig;
    state.markers = ScoringEngine::sortedByTime(project.markers);
    state.initialScore = project.initialScore;
    state.scoreboardPosition = project.scoreboardPosition();
    state.scoreboardUserScale = project.scoreboardUserScale.value_or(1.0);
    state.trimStart = project.trimStart;
    state.trimEnd = project.trimEnd;
    if (project.watermarkCorner)
        state.watermarkCorner = *project.watermarkCorner;
    if (project.watermarkPath)
        state.watermarkURL = QUrl::fromLocalFile(*project.watermarkPath);
    if (project.videoPath)
        state.videoURL = QUrl::fromLocalFile(*project.videoPath);
    state.currentProjectURL = sourceURL;
    state.step = firstUnfinished(project, state);
    state.save();
}

std::vector<InputFile> inputFiles(const AppState& state) {
    std::vector<InputFile> files;
    const auto add = [&](const std::optional<QUrl>& url, const char* role) {
        if (url)
            files.push_back({url->toLocalFile(), QString::fromUtf8(role)});
    };
    add(state.currentProjectURL.value(), "the project itself");
    add(state.videoURL.value(), "the source video");
    add(state.watermarkURL.value(), "the watermark");
    if (const auto& match = state.matchConfig.value())
        add(match->logoURL, "the logo");
    return files;
}

OpenReport openProject(const QString& path, AppState& state) {
    using enum OpenReport::Role;
    ProjectFile project = ProjectFile::load(path);
    OpenReport report;
    if (project.matchConfig && project.matchConfig->logoURL) {
        const QUrl stored = *project.matchConfig->logoURL;
        if (const auto found = noted(logo, placeOf(stored), findFile(stored, path), report))
            project.matchConfig->logoURL = QUrl::fromLocalFile(*found);
    }
    if (project.watermarkPath) {
        const QString stored = *project.watermarkPath;
        project.watermarkPath = noted(watermark, stored, findFile(stored, path), report).value_or(stored);
    }
    bool isVideoMissing = false;
    if (project.videoPath) {
        const auto found = noted(video, *project.videoPath, findFile(*project.videoPath, path), report);
        isVideoMissing = !found;
        project.videoPath = found.value_or(*project.videoPath);
    }

    apply(project, state, QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    if (isVideoMissing) {
        state.videoURL = std::nullopt;
        state.step = Screen::video;
    }
    return report;
}

}
