#include "app/DocumentCommands.h"

#include "persistence/CSVParser.h"
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
    const auto path = m_context.dialogs.chooseFileToOpen(
        m_window, m_context.text(L10nKey::documentOpenDialog), {projectFilter()});
    if (path)
        openProjectFile(*path);
}

void DocumentCommands::openProjectFile(const QString& path) {
    if (!mayThrowAway(m_context.text(L10nKey::documentOpenTitle),
                      m_context.text(L10nKey::documentOpenMessage),
                      m_context.text(L10nKey::documentOpenConfirm)))
        return;
    OpenReport report;
    try {
        report = pointloom::openProject(path, m_context.state);
    } catch (const DocumentError& error) {
        alert(m_context.text(L10nKey::documentCannotOpen), QString::fromUtf8(error.what()));
        return;
    }
    becomeDocument();
    remember(path);
    Q_EMIT opened();
    for (const auto& [role, storedPath] : report.missing) {
        if (role == OpenReport::Role::logo)
            alert(m_context.text(L10nKey::documentLogoMissingTitle),
                  format(m_context.text(L10nKey::documentLogoMissingMessage), storedPath));
        else if (role == OpenReport::Role::video)
            alert(m_context.text(L10nKey::documentVideoMissingTitle),
                  format(m_context.text(L10nKey::documentVideoMissingMessage), storedPath));
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
        chooseFileToSave(m_context, m_window, m_context.text(L10nKey::documentSaveDialog),
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
        alert(m_context.text(L10nKey::documentCannotSave), QString::fromUtf8(error.what()));
        return;
    }
    setSaved(project);
    m_context.state.currentProjectURL = QUrl::fromLocalFile(path);
    remember(path);
    Q_EMIT documentChanged();
}

void DocumentCommands::downloadSampleCSV() {
    const auto path = chooseFileToSave(m_context, m_window, m_context.text(L10nKey::documentSampleDialog),
                                       QStringLiteral("pointloom_sample.csv"), QStringLiteral("CSV (*.csv)"),
                                       QStringLiteral(".csv"));
    if (!path)
        return;
    try {
        requireNoInput(*path, inputFiles(m_context.state));
        writeDocument(*path, CSVParser::sampleText().toUtf8());
    } catch (const DocumentError& error) {
        alert(m_context.text(L10nKey::documentCannotSaveSample), QString::fromUtf8(error.what()));
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
