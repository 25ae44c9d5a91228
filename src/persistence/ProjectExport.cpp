#include "persistence/ProjectExport.h"

#include "model/ScoringEngine.h"

namespace pointloom {

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
