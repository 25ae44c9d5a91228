#include "persistence/ProjectSession.h"

#include "export/ExportJob.h"
#include "model/ScoringEngine.h"

#include <QDir>
#include <QFileInfo>
#include <ranges>

namespace pointloom {

namespace {

// A leading colon would name a Qt resource.
QString placeIn(const QDir& folder, const QString& name) {
    return name.startsWith(u':') ? folder.absolutePath() + u'/' + name : folder.absoluteFilePath(name);
}

NamedFile located(const QString& storedPath, const QDir& folder) {
    const QString named = placeIn(folder, storedPath);
    if (QFileInfo(named).isFile())
        return {.storedPath = storedPath, .path = named};
    const QString beside = placeIn(folder, QFileInfo(storedPath).fileName());
    if (QFileInfo(beside).isFile())
        return {.storedPath = storedPath, .path = beside, .isBesideDocument = true};
    return {.storedPath = storedPath, .path = std::nullopt};
}

NamedFile located(const QUrl& url, const QDir& folder) {
    if (url.isLocalFile())
        return located(url.toLocalFile(), folder);
    if (url.isRelative())
        return located(url.path(), folder);
    return {.storedPath = url.toDisplayString(), .path = std::nullopt};
}

}

ProjectFiles locateFiles(const ProjectFile& project, const QString& documentPath) {
    const QDir folder = QFileInfo(documentPath).absoluteDir();
    ProjectFiles files;
    if (project.videoPath) {
        const media::Recording recording(*project.videoPath, project.videoFiles);
        files.video = located(recording.first(), folder);
        for (const QString& path : recording.files() | std::views::drop(1))
            files.furtherVideos.push_back(located(path, folder));
    }
    if (project.matchConfig && project.matchConfig->logoURL)
        files.logo = located(*project.matchConfig->logoURL, folder);
    if (project.watermarkPath)
        files.watermark = located(*project.watermarkPath, folder);
    return files;
}

namespace {

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
    auto project = recordOf<ProjectFile>(state);
    if (!state.parts.value().withoutCuts)
        project.cuts = std::nullopt;
    if (!project.videoPath || !media::Recording(*project.videoPath, project.videoFiles).isSplit())
        project.videoFiles = std::nullopt;
    return project;
}

void apply(const ProjectFile& project, AppState& state, const QUrl& sourceURL) {
    state.reset();
    state.cuts = std::vector<CutZone>{}; // a reset keeps those of the session
    state.selectedCutID = std::nullopt;
    restoreRecord(project, state);
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
    if (const auto recording = state.recording())
        for (const QString& path : recording->files())
            add(QUrl::fromLocalFile(path), "the source video");
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
    std::optional<QString> absent;
    const auto settleVideo = [&](const NamedFile& file) {
        if (!file.path && !absent)
            absent = file.storedPath;
        return settled(video, file, report);
    };
    if (files.video) {
        std::vector<QString> all{settleVideo(*files.video)};
        for (const NamedFile& file : files.furtherVideos)
            all.push_back(settleVideo(file));
        project.videoPath = all.front();
        project.videoFiles = all;
    }

    apply(project, state, QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    if (absent) {
        state.videoURL = std::nullopt;
        state.absentVideo = absent;
        state.step = Screen::video;
    }
    return report;
}

std::optional<ExportJob> exportJobFor(const ProjectFile& project) {
    if (!project.matchConfig || !project.selectedTemplate || !project.videoPath)
        return std::nullopt;
    ExportJob job;
    job.videoPath = *project.videoPath;
    if (media::Recording(job.videoPath, project.videoFiles).isSplit())
        job.videoFiles = project.videoFiles;
    job.trimStart = project.trimStart;
    job.trimEnd = project.trimEnd;
    const PartChoice parts = project.parts.value_or(PartChoice());
    job.settings.rallies = parts.margins();
    if (project.cuts)
        job.leftOut = parts.leftOut(*project.cuts);

    OverlayDescription& overlay = job.overlay;
    overlay.markers = project.markers;
    overlay.initialScore = initialScoreOf(project, *project.matchConfig);
    overlay.config = *project.matchConfig;
    overlay.templateID = *project.selectedTemplate;
    overlay.scoreboardPosition = project.scoreboardPosition();
    overlay.scoreboardUserScale = project.scoreboardUserScale.value_or(overlay.scoreboardUserScale);
    overlay.watermarkPath = project.watermarkPath;
    job.settings.watermarkCorner = project.watermarkCorner.value_or(job.settings.watermarkCorner);
    return job;
}

SportScoreState initialScoreOf(const ProjectFile& project, const MatchConfig& config) {
    return project.initialScore ? *project.initialScore : ScoringEngine::getInitialScore(config);
}

}
