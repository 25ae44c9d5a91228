#include "app/DocumentCommands.h"

#include "persistence/CSVParser.h"
#include "persistence/DocumentError.h"
#include "persistence/DocumentFile.h"
#include "persistence/ProjectSession.h"
#include "ui/common/Preferences.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <QCryptographicHash>
#include <QFileInfo>

namespace pointloom {

namespace {

constexpr std::string_view recentKey = "recentProjects";
constexpr QChar recentSeparator = u'\0'; // cannot occur in a path
constexpr qsizetype mostRecent = 10;
constexpr std::string_view savedKey = "savedSession"; // fingerprint of what was last saved or opened

constexpr UiText openTitle{"Open another project?",   "Ouvrir un autre projet ?",
                           "¿Abrir otro proyecto?",   "Aprire un altro progetto?",
                           "Anderes Projekt öffnen?", "Öppna ett annat projekt?",
                           "Abrir outro projeto?"};
constexpr UiText openMessage{"Changes that you have not saved to a project will be lost.",
                             "Les modifications que tu n'as pas enregistrées dans un projet seront perdues.",
                             "Se perderán los cambios que no hayas guardado en un proyecto.",
                             "Le modifiche che non hai salvato in un progetto andranno perse.",
                             "Änderungen, die du nicht in einem Projekt gesichert hast, gehen verloren.",
                             "Ändringar som du inte har sparat i ett projekt går förlorade.",
                             "As alterações que não guardaste num projeto vão perder-se."};
constexpr UiText openConfirm{"Open", "Ouvrir", "Abrir", "Apri", "Öffnen", "Öppna", "Abrir"};

// Fingerprint of the fields that a restored session keeps; its video and the scale of its scoreboard are not
// stored.
QByteArray fingerprint(ProjectFile project) {
    project.videoPath.reset();
    project.scoreboardUserScale.reset();
    return QCryptographicHash::hash(json::compact(json::encode(project)), QCryptographicHash::Sha256).toHex();
}

QString projectFilter() {
    return QStringLiteral("Pointloom (*.plp *.PLP)");
}

}

DocumentCommands::DocumentCommands(const UiContext& context, QWidget* window)
    : m_context(context)
    , m_window(window)
    , m_saved(projectFrom(AppState())) {
    const ProjectFile restored = projectFrom(context.state);
    if (Preferences::remembered(context.defaults, savedKey) == fingerprint(restored))
        m_saved = restored;
}

void DocumentCommands::newSession() {
    if (!mayThrowAway(m_context.text(L10nKey::resetDialogTitle), m_context.text(L10nKey::resetDialogMessage),
                      m_context.text(L10nKey::resetConfirm)))
        return;
    m_context.state.reset();
    becomeDocument();
}

void DocumentCommands::openProject() {
    const auto path = m_context.dialogs.chooseFileToOpen(m_window, QStringLiteral("Open Pointloom Project"),
                                                         {projectFilter()});
    if (path)
        openProjectFile(*path);
}

void DocumentCommands::openProjectFile(const QString& path) {
    if (!mayThrowAway(m_context.text(openTitle), m_context.text(openMessage), m_context.text(openConfirm)))
        return;
    OpenReport report;
    try {
        report = pointloom::openProject(path, m_context.state);
    } catch (const DocumentError& error) {
        alert(QStringLiteral("Could not open project"), QString::fromUtf8(error.what()));
        return;
    }
    becomeDocument();
    remember(path);
    Q_EMIT opened();
    for (const auto& [role, storedPath] : report.missing) {
        if (role == OpenReport::Role::logo)
            alert(QStringLiteral("Logo file not found"),
                  QStringLiteral("The logo at %1 could not be found. Loading without logo.").arg(storedPath));
        else if (role == OpenReport::Role::video)
            alert(QStringLiteral("Video file not found"),
                  QStringLiteral("The video at %1 could not be found. Please re-import it.").arg(storedPath));
    }
}

void DocumentCommands::saveProject() {
    if (const auto& url = m_context.state.currentProjectURL.value())
        writeTo(url->toLocalFile());
    else
        saveProjectAs();
}

void DocumentCommands::saveProjectAs() {
    const auto path =
        chooseFileToSave(m_context, m_window, QStringLiteral("Save Pointloom Project"),
                         QStringLiteral("project.plp"), projectFilter(), QStringLiteral(".plp"));
    if (path)
        writeTo(*path);
}

void DocumentCommands::writeTo(const QString& path) {
    const ProjectFile project = projectFrom(m_context.state);
    try {
        auto inputs = inputFiles(m_context.state);
        if (m_context.state.currentProjectURL.value()) // the first of them, which is replaced
            inputs.erase(inputs.begin());
        requireNoInput(path, inputs);
        project.save(path);
    } catch (const DocumentError& error) {
        alert(QStringLiteral("Could not save project"), QString::fromUtf8(error.what()));
        return;
    }
    setSaved(project);
    m_context.state.currentProjectURL = QUrl::fromLocalFile(path);
    remember(path);
    Q_EMIT documentChanged();
}

void DocumentCommands::downloadSampleCSV() {
    const auto path = chooseFileToSave(m_context, m_window, QStringLiteral("Save Sample CSV"),
                                       QStringLiteral("pointloom_sample.csv"), QStringLiteral("CSV (*.csv)"),
                                       QStringLiteral(".csv"));
    if (!path)
        return;
    try {
        requireNoInput(*path, inputFiles(m_context.state));
        writeDocument(*path, CSVParser::sampleText().toUtf8());
    } catch (const DocumentError& error) {
        alert(QStringLiteral("Could not save CSV"), QString::fromUtf8(error.what()));
    }
}

bool DocumentCommands::isModified() const {
    return projectFrom(m_context.state) != m_saved;
}

bool DocumentCommands::mayThrowAway(const QString& title, const QString& message, const QString& confirm) {
    return !isModified() ||
           m_context.dialogs.confirm(m_window, title, message, confirm, m_context.text(L10nKey::cancel));
}

// The session has been replaced by a document, or by a fresh one.
void DocumentCommands::becomeDocument() {
    m_context.undo.removeAllActions();
    setSaved(projectFrom(m_context.state));
    Q_EMIT sessionReplaced();
    Q_EMIT documentChanged();
}

void DocumentCommands::setSaved(const ProjectFile& project) {
    m_saved = project;
    Preferences::remember(m_context.defaults, savedKey, fingerprint(project));
}

QStringList DocumentCommands::recentProjects() const {
    return QString::fromUtf8(Preferences::remembered(m_context.defaults, recentKey))
        .split(recentSeparator, Qt::SkipEmptyParts);
}

void DocumentCommands::forgetRecentProjects() {
    storeRecent({});
}

void DocumentCommands::remember(const QString& path) {
    QStringList paths = recentProjects();
    const QString whole = QFileInfo(path).absoluteFilePath();
    paths.removeAll(whole);
    paths.prepend(whole);
    storeRecent(paths.first(std::min(paths.size(), mostRecent)));
}

void DocumentCommands::storeRecent(const QStringList& paths) {
    Preferences::remember(m_context.defaults, recentKey, paths.join(recentSeparator).toUtf8());
}

void DocumentCommands::alert(const QString& title, const QString& message) {
    m_context.dialogs.alert(m_window, title, message);
}

}
