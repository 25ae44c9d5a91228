#include "persistence/ProjectSession.h"

#include "export/ExportJob.h"
#include "model/ScoringEngine.h"

#include <QDir>
#include <QFileInfo>

namespace pointloom {

namespace {

std::optional<QString> localPath(const QUrl& url) {
    if (url.isLocalFile())
        return url.toLocalFile();
    return url.isRelative() ? std::optional(url.path()) : std::nullopt;
}

// A leading colon would name a Qt resource.
QString placeIn(const QDir& folder, const QString& name) {
    return name.startsWith(u':') ? folder.absolutePath() + u'/' + name : folder.absoluteFilePath(name);
}

}

std::optional<FoundFile> findFile(const QString& storedPath, const QString& documentPath) {
    const QDir folder = QFileInfo(documentPath).absoluteDir();
    const QString named = placeIn(folder, storedPath);
    if (QFileInfo(named).isFile())
        return FoundFile{named, false};
    const QString beside = placeIn(folder, QFileInfo(storedPath).fileName());
    return QFileInfo(beside).isFile() ? std::optional(FoundFile{beside, true}) : std::nullopt;
}

std::optional<FoundFile> findFile(const QUrl& storedPicture, const QString& documentPath) {
    const auto path = localPath(storedPicture);
    return path ? findFile(*path, documentPath) : std::nullopt;
}

QString placeOf(const QUrl& storedPicture) {
    return localPath(storedPicture).value_or(storedPicture.toDisplayString());
}

namespace {

Screen firstUnfinished(const ProjectFile& project, const AppState& state) {
    if (!project.selectedTemplate)
        return project.selectedSport ? Screen::scoreboard : Screen::sport;
    if (!project.matchConfig)
        return Screen::match;
    return state.videoURL.value() ? Screen::editor : Screen::video;
}

// The file's present path, absent when it was not found; reported when that is not `storedPath`.
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
    return recordOf<ProjectFile>(state);
}

void apply(const ProjectFile& project, AppState& state, const QUrl& sourceURL) {
    state.reset();
    state.cuts = std::vector<CutZone>{}; // a document has none, and a reset keeps those of the session
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

std::optional<ExportJob> exportJobFor(const ProjectFile& project) {
    if (!project.matchConfig || !project.selectedTemplate || !project.videoPath)
        return std::nullopt;
    ExportJob job;
    job.videoPath = *project.videoPath;
    job.trimStart = project.trimStart;
    job.trimEnd = project.trimEnd;

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
