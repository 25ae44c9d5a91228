// pointloom-cli check: says what a document holds and whether everything is there.
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/ProjectInputs.h"
#include "media/MediaError.h"
#include "media/MediaInfo.h"
#include "persistence/ProjectSession.h"

#include <algorithm>
#include <QFileInfo>

namespace pointloom::cli {

namespace {

class CheckCommand final : public Command {
public:
    explicit CheckCommand(CLI::App& root);
    ExitStatus run() override;

private:
    QString m_project;
    bool m_asJson = false;
};

CheckCommand::CheckCommand(CLI::App& root)
    : Command(root, "check", "Say what a project holds and what is missing") {
    addProjectArgument(app(), m_project);
    app().add_flag("--json", m_asJson, "Print one object");
    app().footer("Example:\n  pointloom-cli check final.plp && pointloom-cli export final.plp\n\n"
                 "The exit status is 0 when every file that it names is there, and 1 otherwise.");
}

struct ProjectReport {
    std::vector<std::pair<QString, NamedFile>> files; // by role, the video first
    std::optional<media::MediaInfo> media;            // of the video, when it is there and can be read
    QStringList missing;                              // named by the document, but not on the disk
    QStringList unset;                                // not named yet, but needed by an export
    QStringList warnings;                             // what will probably surprise
};

template <HasRawValues Enumeration>
QString word(Enumeration value) {
    return QString::fromUtf8(rawValue(value));
}

void reportFiles(ProjectReport& report, const ProjectFile& project, const QString& projectPath) {
    const ProjectFiles named = locateFiles(project, projectPath);
    const auto add = [&](const char* role, const std::optional<NamedFile>& file) {
        if (file)
            report.files.emplace_back(QString::fromUtf8(role), *file);
    };
    add("video", named.video);
    for (const NamedFile& video : named.furtherVideos)
        add("video", video);
    add("logo", named.logo);
    add("watermark", named.watermark);
    if (!named.video)
        report.unset += QStringLiteral("no video is chosen");
    for (const auto& [role, file] : report.files) {
        if (!file.path)
            report.missing += QStringLiteral("the %1 is missing: %2").arg(role, file.storedPath);
        else if (file.isBesideDocument)
            report.warnings +=
                QStringLiteral("the %1 is not at %2, but lies beside the project").arg(role, file.storedPath);
    }
}

void reportNumberOfSets(ProjectReport& report, const MatchConfig& config) {
    const auto offered = numberOfSetsOptions(config.sport);
    if (std::find(offered.begin(), offered.end(), config.numberOfSets) == offered.end())
        report.warnings += QStringLiteral("%1 is not played over %2 sets")
                               .arg(displayName(config.sport))
                               .arg(config.numberOfSets);
}

// The editor enters the points of a match with unknown rules by hand.
void reportRules(ProjectReport& report, const MatchConfig& config, const std::vector<std::string>& rules) {
    try {
        rulesOfMatch(config, rules);
    } catch (const FormatError& error) {
        report.warnings += QStringLiteral("rules: ") + QString::fromUtf8(error.what());
    }
}

void reportSettings(ProjectReport& report, const ProjectFile& project) {
    if (!project.matchConfig) {
        report.unset += QStringLiteral("the match is not set up: no teams, no sets");
    } else {
        reportNumberOfSets(report, *project.matchConfig);
        reportRules(report, *project.matchConfig, project.rules.value_or(std::vector<std::string>()));
    }
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
    std::vector<QString> videos;
    for (const auto& [role, file] : report.files) {
        if (role != u"video")
            continue;
        if (!file.path)
            return;
        videos.push_back(*file.path);
    }
    if (videos.empty())
        return;
    const media::Recording recording(videos.front(), videos);
    report.warnings += differencesIn(recording);
    try {
        report.media = media::infoOf(recording);
    } catch (const media::MediaError& error) {
        report.missing += QStringLiteral("the video cannot be read: ") + QString::fromUtf8(error.what());
        return;
    }
    if (!report.media->video) {
        report.media.reset();
        report.missing += QStringLiteral("the video has no picture");
        return;
    }
    const double duration = report.media->duration;
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
    for (std::size_t i = 0; i < report.files.size(); ++i) {
        const auto& [role, file] = report.files[i];
        const bool isLastOfRole = i + 1 == report.files.size() || report.files[i + 1].first != role;
        line(role, file.path.value_or(file.storedPath));
        if (report.media && role == u"video" && isLastOfRole)
            line(QString(), QStringLiteral("%1 s, %2 x %3, %4")
                                .arg(report.media->duration)
                                .arg(report.media->video->uprightSize().width())
                                .arg(report.media->video->uprightSize().height())
                                .arg(report.media->video->codecName));
    }
    for (const QString& warning : report.warnings)
        line(QStringLiteral("warning"), warning);
    for (const QString& gap : report.unset)
        line(QStringLiteral("to do"), gap);
    for (const QString& fault : report.missing)
        line(QStringLiteral("missing"), fault);
    return text;
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
    for (const auto& [role, file] : report.files) {
        json::OrderedValue entry{{"role", role.toStdString()}, {"path", file.storedPath.toStdString()}};
        if (file.path)
            entry["found"] = file.path->toStdString();
        files.push_back(std::move(entry));
    }
    object["files"] = std::move(files);
    if (const auto& info = report.media)
        object["video"] = json::OrderedValue{{"duration", info->duration},
                                             {"width", info->video->uprightSize().width()},
                                             {"height", info->video->uprightSize().height()},
                                             {"codec", info->video->codecName.toStdString()}};
    object["warnings"] = jsonList(report.warnings);
    object["unset"] = jsonList(report.unset);
    object["missing"] = jsonList(report.missing);
    return object;
}

ExitStatus CheckCommand::run() {
    const ProjectFile project = ProjectFile::load(m_project);
    const ProjectReport report = reportOn(project, m_project);
    if (m_asJson)
        printJson(reportJson(project, report));
    else
        print(reportText(project, report).toStdString());
    if (report.missing.isEmpty())
        return ExitStatus::done;
    finishPrinting();
    throw CommandError(QFileInfo(m_project).fileName() + QStringLiteral(": ") +
                       report.missing.join(QStringLiteral("; ")));
}

}

std::unique_ptr<Command> makeCheckCommand(CLI::App& root) {
    return std::make_unique<CheckCommand>(root);
}

}
