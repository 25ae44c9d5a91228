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

// The file's path; the stored one and an entry in the report when it is missing.
QString settled(OpenReport::Role role, const NamedFile& file, OpenReport& report) {
    if (!file.path)
        report.missing.push_back({role, file.storedPath});
    else if (file.isBesideDocument)
        report.relocated.push_back({role, file.storedPath, *file.path});
    return file.path.value_or(file.storedPath);
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
    const ProjectFiles files = locateFiles(project, path);
    if (files.logo) {
        const QString place = settled(logo, *files.logo, report);
        if (files.logo->path)
            project.matchConfig->logoURL = QUrl::fromLocalFile(place);
    }
    if (files.watermark)
        project.watermarkPath = settled(watermark, *files.watermark, report);
    if (files.video)
        project.videoPath = settled(video, *files.video, report);

    apply(project, state, QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    if (files.video && !files.video->path) {
        state.videoURL = std::nullopt;
        state.step = Screen::video;
    }
    return report;
}

}
