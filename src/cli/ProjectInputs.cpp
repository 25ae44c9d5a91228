#include "cli/ProjectInputs.h"

#include "export/ExportSource.h"
#include "persistence/ProjectSession.h"
#include "render/PictureFile.h"

#include <algorithm>
#include <QFileInfo>

namespace pointloom::cli {

namespace {

QString shortName(const QString& path) {
    return QFileInfo(path).fileName();
}

[[noreturn]] void fail(const QString& projectPath, const QString& reason) {
    throw CommandError(shortName(projectPath) + QStringLiteral(": ") + reason);
}

QString besideNote(const QString& role, const QString& path) {
    return QStringLiteral("the %1 was found beside the project: %2").arg(role, path);
}

void requireTemplate(const ProjectFile& project, const QString& projectPath) {
    if (!project.selectedTemplate)
        fail(projectPath, QStringLiteral("no scoreboard template is chosen"));
}

QString settleVideo(const ProjectFile& project, const QString& projectPath, const ExportRequest& request,
                    Remarks& remarks) {
    if (request.videoPath) {
        if (!QFileInfo::exists(*request.videoPath))
            throw CommandError(*request.videoPath + QStringLiteral(": no such video"));
        return *request.videoPath;
    }
    if (!project.videoPath)
        fail(projectPath, QStringLiteral("no video is chosen; name one with --video"));
    const auto found = findFile(*project.videoPath, projectPath);
    if (!found)
        fail(projectPath, QStringLiteral("the video is missing: ") + *project.videoPath);
    if (found->isBesideDocument)
        remarks.notes += besideNote(QStringLiteral("video"), found->path);
    return found->path;
}

std::optional<QString> settleWatermark(const ProjectFile& project, const QString& projectPath,
                                       const ExportRequest& request, Remarks& remarks) {
    std::optional<FoundFile> found;
    if (request.watermarkPath) {
        if (QFileInfo(*request.watermarkPath).isFile())
            found = {.path = *request.watermarkPath};
    } else if (project.watermarkPath) {
        found = findFile(*project.watermarkPath, projectPath);
    } else {
        return std::nullopt;
    }
    if (!found) {
        remarks.warnings += QStringLiteral("the watermark is missing and left out: ") +
                            request.watermarkPath.value_or(project.watermarkPath.value_or(QString()));
        return std::nullopt;
    }
    if (found->isBesideDocument)
        remarks.notes += besideNote(QStringLiteral("watermark"), found->path);
    if (loadPictureFile(found->path).isNull()) {
        remarks.warnings +=
            QStringLiteral("the watermark is left out; it is no PNG or JPEG picture of up to %1 "
                           "million pixels: ")
                .arg(mostPicturePixels / 1'000'000) +
            found->path;
        return std::nullopt;
    }
    return found->path;
}

void settleTrim(ProjectFile& project, const QString& projectPath, const ExportRequest& request) {
    project.trimStart = request.trimStart.value_or(project.trimStart);
    project.trimEnd = request.trimEnd ? request.trimEnd : project.trimEnd;
    if (!project.trimEnd || *project.trimEnd > project.trimStart)
        return;
    const QString fault = QStringLiteral("the end of the range, %1 s, is not after its start, %2 s")
                              .arg(*project.trimEnd)
                              .arg(project.trimStart);
    if (request.trimStart || request.trimEnd)
        throw UsageError(QStringLiteral("--trim-start, --trim-end: ") + fault);
    fail(projectPath, fault);
}

void warnOfScoresNotDrawn(const OverlayDescription& overlay, Remarks& remarks) {
    const auto isHidden = [&](const SportScoreState& score) {
        return !drawsScore(overlay.templateID, score);
    };
    const auto hidden = std::count_if(overlay.markers.begin(), overlay.markers.end(),
                                      [&](const Marker& marker) { return isHidden(marker.score); }) +
                        (isHidden(overlay.initialScore) ? 1 : 0);
    if (hidden > 0)
        remarks.warnings +=
            QStringLiteral("the template \"%1\" draws another kind of score: %2 of %3 scores are not shown")
                .arg(QString::fromUtf8(rawValue(overlay.templateID)))
                .arg(hidden)
                .arg(overlay.markers.size() + 1);
}

}

ProjectInputs resolveInputs(ProjectFile project, const QString& projectPath, const ExportRequest& request) {
    ProjectInputs inputs;
    requireMatch(project, projectPath);
    requireTemplate(project, projectPath);
    settleTrim(project, projectPath, request);
    project.videoPath = settleVideo(project, projectPath, request, inputs.remarks);
    settleLogo(*project.matchConfig, projectPath, inputs.remarks);
    project.watermarkPath = settleWatermark(project, projectPath, request, inputs.remarks);
    project.watermarkCorner = request.watermarkCorner ? request.watermarkCorner : project.watermarkCorner;

    ExportJob& job = inputs.job;
    job = exportJobFor(project).value(); // all that it needs was required above
    warnOfScoresNotDrawn(job.overlay, inputs.remarks);
    const WatermarkCorner corner = job.settings.watermarkCorner;
    job.settings = request.settings;
    job.settings.watermarkCorner = corner;
    job.projectPath = projectPath;
    job.outputPath = request.outputPath;
    return inputs;
}

void settleEncoder(ProjectInputs& inputs) {
    if (const auto fallback = settleEncoder(inputs.job))
        inputs.remarks.notes +=
            QStringLiteral("%1 does not work here (%2); the software encoder is used")
                .arg(QString::fromUtf8(media::nameOf(fallback->requested)), fallback->reason);
}

const MatchConfig& requireMatch(const ProjectFile& project, const QString& projectPath) {
    if (!project.matchConfig)
        fail(projectPath, QStringLiteral("the match is not set up: no teams, no sets"));
    return *project.matchConfig;
}

bool drawsScore(TemplateID id, const SportScoreState& score) {
    return usesTennisScoring(sportOf(id)) == std::holds_alternative<ScoreState>(score);
}

void settleLogo(MatchConfig& config, const QString& projectPath, Remarks& remarks) {
    if (!config.logoURL)
        return;
    const auto found = findFile(*config.logoURL, projectPath);
    if (!found) {
        remarks.warnings += QStringLiteral("the logo is missing and left out: ") + placeOf(*config.logoURL);
        config.logoURL.reset();
        return;
    }
    if (found->isBesideDocument)
        remarks.notes += besideNote(QStringLiteral("logo"), found->path);
    config.logoURL = QUrl::fromLocalFile(found->path);
}

CommandError faultOf(const ExportError& error, const QString& projectPath) {
    return CommandError(shortName(projectPath) + QStringLiteral(": ") + QString::fromUtf8(error.what()));
}

std::vector<InputFile> inputFiles(const ProjectFile& project, const QString& projectPath) {
    ExportJob job;
    job.projectPath = projectPath;
    const auto put = [](QString& place, const std::optional<FoundFile>& found) {
        if (found)
            place = found->path;
    };
    if (project.videoPath)
        put(job.videoPath, findFile(*project.videoPath, projectPath));
    if (project.watermarkPath)
        put(job.overlay.watermarkPath.emplace(), findFile(*project.watermarkPath, projectPath));
    QString logo;
    if (project.matchConfig && project.matchConfig->logoURL)
        put(logo, findFile(*project.matchConfig->logoURL, projectPath));
    job.overlay.config.logoURL = QUrl::fromLocalFile(logo);
    return inputFiles(job);
}

}
