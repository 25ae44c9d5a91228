#include "cli/ProjectInputs.h"

#include "export/ExportSource.h"
#include "files/NewFile.h"
#include "persistence/ProjectSession.h"
#include "render/PictureFile.h"

#include <algorithm>
#include <QDir>
#include <QFileInfo>
#include <ranges>

namespace pointloom::cli {

namespace {

QString shortName(const QString& path) {
    return QFileInfo(path).fileName();
}

[[noreturn]] void fail(const QString& projectPath, const QString& reason) {
    throw CommandError(shortName(projectPath) + QStringLiteral(": ") + reason);
}

void requireTemplate(const ProjectFile& project, const QString& projectPath) {
    if (!project.selectedTemplate)
        fail(projectPath, QStringLiteral("no scoreboard template is chosen"));
}

void requireSizeToFill(const ExportSettings& settings) {
    if (settings.fill && !targetSize(settings.preset))
        throw UsageError("--fill: the original size has no bars; name another one with --preset");
}

void noteIfBeside(const NamedFile& file, const QString& role, Remarks& remarks) {
    if (file.isBesideDocument)
        remarks.notes += QStringLiteral("the %1 was found beside the project: %2").arg(role, *file.path);
}

std::vector<QString> settleVideos(const ProjectFiles& files, const QString& projectPath,
                                  const ExportRequest& request, Remarks& remarks) {
    requireVideos(request.videos);
    if (!request.videos.empty())
        return request.videos;
    if (!files.video)
        fail(projectPath, QStringLiteral("no video is chosen; name one with --video"));
    std::vector<QString> found;
    const auto settle = [&](const NamedFile& video) {
        if (!video.path)
            fail(projectPath, QStringLiteral("the video is missing: ") + video.storedPath);
        noteIfBeside(video, QStringLiteral("video"), remarks);
        found.push_back(*video.path);
    };
    settle(*files.video);
    std::ranges::for_each(files.furtherVideos, settle);
    return found;
}

QString wordsOf(media::Difference difference, const media::MediaInfo& first,
                const media::MediaInfo& further) {
    const auto size = [](const media::MediaInfo& info) {
        const QSize upright = info.video->uprightSize();
        return QStringLiteral("%1 x %2").arg(upright.width()).arg(upright.height());
    };
    switch (difference) {
    case media::Difference::shape:
        return QStringLiteral("another shape of picture");
    case media::Difference::size:
        return QStringLiteral("%1 instead of %2").arg(size(further), size(first));
    case media::Difference::rate:
        return QStringLiteral("%1 instead of %2 frames a second")
            .arg(further.video->frameRate.value(), 0, 'g', 4)
            .arg(first.video->frameRate.value(), 0, 'g', 4);
    case media::Difference::codec:
        return QStringLiteral("%1 instead of %2").arg(further.video->codecName, first.video->codecName);
    case media::Difference::light:
        return QStringLiteral("other light (HDR or not)");
    case media::Difference::sound:
        return QStringLiteral("%1 audio tracks instead of %2")
            .arg(further.audioTracks)
            .arg(first.audioTracks);
    }
    return {};
}

std::optional<QString> settleWatermark(std::optional<NamedFile> watermark, const ExportRequest& request,
                                       Remarks& remarks) {
    if (const auto& path = request.watermarkPath)
        watermark = {.storedPath = *path, .path = QFileInfo(*path).isFile() ? path : std::nullopt};
    if (!watermark)
        return std::nullopt;
    if (!watermark->path) {
        remarks.warnings += QStringLiteral("the watermark is missing and left out: ") + watermark->storedPath;
        return std::nullopt;
    }
    noteIfBeside(*watermark, QStringLiteral("watermark"), remarks);
    if (loadPictureFile(*watermark->path).isNull()) {
        remarks.warnings +=
            QStringLiteral("the watermark is left out; it is no PNG or JPEG picture of up to %1 "
                           "million pixels: ")
                .arg(mostPicturePixels / 1'000'000) +
            *watermark->path;
        return std::nullopt;
    }
    return watermark->path;
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
    requireSizeToFill(request.settings);
    settleTrim(project, projectPath, request);
    const ProjectFiles files = locateFiles(project, projectPath);
    const std::vector<QString> videos = settleVideos(files, projectPath, request, inputs.remarks);
    project.videoPath = videos.front();
    project.videoFiles = videos;
    settleLogo(*project.matchConfig, files.logo, inputs.remarks);
    project.watermarkPath = settleWatermark(files.watermark, request, inputs.remarks);

    ExportJob& job = inputs.job;
    job = exportJobFor(project).value(); // all that it needs was required above
    warnOfScoresNotDrawn(job.overlay, inputs.remarks);
    inputs.remarks.notes += differencesIn(job.recording());
    const WatermarkCorner corner = request.watermarkCorner.value_or(job.settings.watermarkCorner);
    const auto rallies = job.settings.rallies;
    job.settings = request.settings;
    job.settings.watermarkCorner = corner;
    if (request.keepsWholeRange)
        job.leftOut.clear();
    else if (!job.settings.rallies)
        job.settings.rallies = rallies;
    job.leftOut.insert(job.leftOut.end(), request.leftOut.begin(), request.leftOut.end());
    job.projectPath = projectPath;
    job.outputPath = request.outputPath;
    return inputs;
}

media::MediaInfo videoInfo(const ExportJob& job) {
    try {
        media::MediaInfo info = infoOf(job.recording());
        requireRange(job, info.duration);
        return info;
    } catch (const media::MediaError& error) {
        throw CommandError(job.videoPath + QStringLiteral(": ") + QString::fromUtf8(error.what()));
    }
}

void settleEncoder(ProjectInputs& inputs) {
    if (const auto fallback = settleEncoder(inputs.job))
        inputs.remarks.notes +=
            QStringLiteral("%1 does not work here (%2); the software encoder is used")
                .arg(QString::fromUtf8(media::nameOf(fallback->requested)), fallback->reason);
}

SegmentPlan makePlan(ProjectInputs& inputs, int count) {
    auto plan = SegmentPlan::make(inputs.job, count, QStringLiteral(POINTLOOM_VERSION));
    if (plan.count() < count)
        inputs.remarks.notes +=
            QStringLiteral("the video can be cut into %1 segments only").arg(plan.count());
    return plan;
}

void requireVideos(const std::vector<QString>& videos) {
    for (const QString& path : videos) {
        if (!QFileInfo::exists(path))
            throw CommandError(path + QStringLiteral(": no such video"));
        if (std::ranges::count(videos, path) > 1)
            throw CommandError(path + QStringLiteral(": named twice"));
    }
}

QStringList differencesIn(const media::Recording& recording) {
    QStringList sentences;
    if (!recording.isSplit())
        return sentences;
    try {
        const media::MediaInfo first = media::factsOf(recording.first()).info;
        for (const QString& path : recording.files() | std::views::drop(1)) {
            const media::MediaInfo further = media::factsOf(path).info;
            QStringList words;
            for (const media::Difference difference : media::differences(first, further))
                words += wordsOf(difference, first, further);
            if (!words.isEmpty())
                sentences +=
                    QStringLiteral("%1 is not like %2: %3")
                        .arg(shortName(path), shortName(recording.first()), words.join(QStringLiteral(", ")));
        }
    } catch (const media::MediaError&) {
        // Reading the video tells.
    }
    return sentences;
}

const MatchConfig& requireMatch(const ProjectFile& project, const QString& projectPath) {
    if (!project.matchConfig)
        fail(projectPath, QStringLiteral("the match is not set up: no teams, no sets"));
    return *project.matchConfig;
}

bool drawsScore(TemplateID id, const SportScoreState& score) {
    return usesTennisScoring(sportOf(id)) == std::holds_alternative<ScoreState>(score);
}

void settleLogo(MatchConfig& config, const std::optional<NamedFile>& logo, Remarks& remarks) {
    if (!logo)
        return;
    if (!logo->path) {
        remarks.warnings += QStringLiteral("the logo is missing and left out: ") + logo->storedPath;
        config.logoURL.reset();
        return;
    }
    noteIfBeside(*logo, QStringLiteral("logo"), remarks);
    config.logoURL = QUrl::fromLocalFile(*logo->path);
}

CommandError faultOf(const ExportError& error, const QString& projectPath) {
    return CommandError(shortName(projectPath) + QStringLiteral(": ") + QString::fromUtf8(error.what()));
}

std::vector<InputFile> inputFiles(const ProjectFile& project, const QString& projectPath) {
    const ProjectFiles files = locateFiles(project, projectPath);
    std::vector<InputFile> found{{projectPath, QStringLiteral("the project itself")}};
    const auto add = [&](const std::optional<NamedFile>& file, const char* role) {
        if (file && file->path)
            found.push_back({*file->path, QString::fromUtf8(role)});
    };
    add(files.video, "the source video");
    for (const NamedFile& video : files.furtherVideos)
        add(video, "the source video");
    add(files.watermark, "the watermark");
    add(files.logo, "the logo");
    return found;
}

void requireUsableFolder(const QString& path) {
    const QFileInfo folder(path);
    if (path.isEmpty())
        throw CommandError("the output has no name");
    if (folder.exists() && !folder.isDir())
        throw CommandError(path + QStringLiteral(": is a file; pictures go into a folder"));
    if (folder.isDir() && !NewFolder::canBeAt(path))
        throw CommandError(path + QStringLiteral(": the folder is not empty"));
    if (!folder.absoluteDir().exists())
        throw CommandError(path + QStringLiteral(": there is no folder ") + folder.absolutePath());
}

void requireUsableOutput(const QString& path, const std::vector<InputFile>& inputs) {
    const QFileInfo output(path);
    if (path.isEmpty())
        throw CommandError("the output has no name");
    if (output.isDir())
        throw CommandError(path + QStringLiteral(": is a folder; name a file in it"));
    if (output.exists() && !output.isFile())
        throw CommandError(path + QStringLiteral(": is not a regular file"));
    if (!output.absoluteDir().exists())
        throw CommandError(path + QStringLiteral(": there is no folder ") + output.absolutePath());
    if (const InputFile* input = replacedInput(path, inputs))
        throw CommandError(path + QStringLiteral(": is ") + input->role +
                           QStringLiteral("; choose another output"));
}

}
