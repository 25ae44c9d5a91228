#include "cli/ProjectReport.h"

#include "cli/Messages.h"
#include "cli/ProjectInputs.h"
#include "media/MediaError.h"
#include "media/MediaInfo.h"
#include "persistence/ProjectSession.h"

#include <algorithm>

namespace pointloom::cli {

namespace {

constexpr QStringView videoRole = u"video";

template <HasRawValues Enumeration>
QString word(Enumeration value) {
    return QString::fromUtf8(rawValue(value));
}

void reportFile(ProjectReport& report, const QString& role, const QString& storedPath,
                const std::optional<FoundFile>& found) {
    report.files.push_back({role, storedPath, found ? std::optional(found->path) : std::nullopt});
    if (!found)
        report.missing += QStringLiteral("the %1 is missing: %2").arg(role, storedPath);
    else if (found->isBesideDocument)
        report.warnings +=
            QStringLiteral("the %1 is not at %2, but lies beside the project").arg(role, storedPath);
}

void reportFiles(ProjectReport& report, const ProjectFile& project, const QString& projectPath) {
    if (project.videoPath)
        reportFile(report, videoRole.toString(), *project.videoPath,
                   findFile(*project.videoPath, projectPath));
    else
        report.unset += QStringLiteral("no video is chosen");
    if (project.matchConfig && project.matchConfig->logoURL) {
        const QUrl& url = *project.matchConfig->logoURL;
        reportFile(report, QStringLiteral("logo"), placeOf(url), findFile(url, projectPath));
    }
    if (project.watermarkPath)
        reportFile(report, QStringLiteral("watermark"), *project.watermarkPath,
                   findFile(*project.watermarkPath, projectPath));
}

void reportNumberOfSets(ProjectReport& report, const MatchConfig& config) {
    const auto offered = numberOfSetsOptions(config.sport);
    if (std::find(offered.begin(), offered.end(), config.numberOfSets) == offered.end())
        report.warnings += QStringLiteral("%1 is not played over %2 sets")
                               .arg(displayName(config.sport))
                               .arg(config.numberOfSets);
}

void reportSettings(ProjectReport& report, const ProjectFile& project) {
    if (!project.matchConfig)
        report.unset += QStringLiteral("the match is not set up: no teams, no sets");
    else
        reportNumberOfSets(report, *project.matchConfig);
    if (!project.selectedTemplate)
        report.unset += QStringLiteral("no scoreboard template is chosen");
    if (project.trimEnd && *project.trimEnd <= project.trimStart)
        report.warnings += QStringLiteral("the range to export is empty: it ends at %1 s and starts at %2 s")
                               .arg(*project.trimEnd)
                               .arg(project.trimStart);
}

void reportScores(ProjectReport& report, const ProjectFile& project) {
    if (!project.selectedTemplate)
        return;
    const auto hidden =
        std::count_if(project.markers.begin(), project.markers.end(), [&](const Marker& marker) {
            return !drawsScore(*project.selectedTemplate, marker.score);
        });
    if (hidden > 0)
        report.warnings +=
            QStringLiteral("the template \"%1\" draws another kind of score than %2 of %3 markers have")
                .arg(word(*project.selectedTemplate))
                .arg(hidden)
                .arg(project.markers.size());
    const bool hidesInitialScore =
        project.matchConfig &&
        !drawsScore(*project.selectedTemplate, initialScoreOf(project, *project.matchConfig));
    if (hidesInitialScore)
        report.warnings +=
            QStringLiteral("the template \"%1\" does not draw the score before the first marker")
                .arg(word(*project.selectedTemplate));
}

void reportVideo(ProjectReport& report, const ProjectFile& project) {
    if (report.files.empty() || !project.videoPath || !report.files.front().foundPath)
        return;
    try {
        const media::MediaInfo info = media::readMediaInfo(*report.files.front().foundPath);
        if (!info.video) {
            report.missing += QStringLiteral("the video has no picture");
            return;
        }
        const QSize size = info.video->uprightSize();
        report.video = {info.duration, size.width(), size.height(), info.video->codecName};
    } catch (const media::MediaError& error) {
        report.missing += QStringLiteral("the video cannot be read: ") + QString::fromUtf8(error.what());
        return;
    }
    const double duration = report.video->duration;
    const auto late = std::count_if(project.markers.begin(), project.markers.end(),
                                    [&](const Marker& marker) { return marker.startTime > duration; });
    if (late > 0)
        report.warnings += QStringLiteral("%1 of %2 markers lie beyond the end of the video, %3 s")
                               .arg(late)
                               .arg(project.markers.size())
                               .arg(duration);
    if (project.trimStart >= duration)
        report.warnings +=
            QStringLiteral("the range to export starts beyond the end of the video, %1 s").arg(duration);
}

}

ProjectReport reportOn(const ProjectFile& project, const QString& projectPath) {
    ProjectReport report;
    reportFiles(report, project, projectPath);
    reportSettings(report, project);
    reportScores(report, project);
    reportVideo(report, project);
    return report;
}

QString reportText(const ProjectFile& project, const ProjectReport& report) {
    QString text;
    const auto line = [&](const QString& name, const QString& value) {
        constexpr int nameColumn = 12;
        text += name.leftJustified(nameColumn) + bareText(value) + u'\n';
    };
    if (const auto& config = project.matchConfig) {
        line(QStringLiteral("sport"), displayName(config->sport));
        line(QStringLiteral("match"),
             config->team1.displayName() + QStringLiteral("  -  ") + config->team2.displayName());
        line(QStringLiteral("format"),
             QStringLiteral("%1, best of %2").arg(word(config->format)).arg(config->numberOfSets));
    }
    if (project.selectedTemplate)
        line(QStringLiteral("template"), word(*project.selectedTemplate));
    line(QStringLiteral("markers"), QString::number(project.markers.size()));
    for (const FileReport& file : report.files) {
        line(file.role, file.foundPath.value_or(file.storedPath));
        if (file.role == videoRole && report.video)
            line(QString(), QStringLiteral("%1 s, %2 x %3, %4")
                                .arg(report.video->duration)
                                .arg(report.video->width)
                                .arg(report.video->height)
                                .arg(report.video->codec));
    }
    for (const QString& warning : report.warnings)
        line(QStringLiteral("warning"), warning);
    for (const QString& gap : report.unset)
        line(QStringLiteral("to do"), gap);
    for (const QString& fault : report.missing)
        line(QStringLiteral("missing"), fault);
    return text;
}

namespace {

json::OrderedValue listOf(const QStringList& texts) {
    auto list = json::OrderedValue::array();
    for (const QString& text : texts)
        list.push_back(text.toStdString());
    return list;
}

}

json::OrderedValue reportJson(const ProjectFile& project, const ProjectReport& report) {
    json::OrderedValue object;
    object["complete"] = report.missing.isEmpty() && report.unset.isEmpty();
    object["version"] = project.version;
    if (project.matchConfig)
        object["match"] = json::encode(*project.matchConfig);
    if (project.selectedTemplate)
        object["template"] = rawValue(*project.selectedTemplate);
    object["markers"] = project.markers.size();
    auto files = json::OrderedValue::array();
    for (const FileReport& file : report.files) {
        json::OrderedValue entry{{"role", file.role.toStdString()}, {"path", file.storedPath.toStdString()}};
        if (file.foundPath)
            entry["found"] = file.foundPath->toStdString();
        files.push_back(std::move(entry));
    }
    object["files"] = std::move(files);
    if (const auto& video = report.video)
        object["video"] = json::OrderedValue{{"duration", video->duration},
                                             {"width", video->width},
                                             {"height", video->height},
                                             {"codec", video->codec.toStdString()}};
    object["warnings"] = listOf(report.warnings);
    object["unset"] = listOf(report.unset);
    object["missing"] = listOf(report.missing);
    return object;
}

}
