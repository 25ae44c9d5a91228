#include "app/DocumentCommands.h"

#include "persistence/CSVParser.h"
#include "persistence/DocumentFile.h"
#include "persistence/ProjectSession.h"
#include "ui/common/Preferences.h"
#include "ui/wizard/WizardFlow.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <QCryptographicHash>
#include <QFileInfo>
#include <QRegularExpression>

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
    project.videoFiles.reset();
    project.scoreboardUserScale.reset();
    return QCryptographicHash::hash(json::compact(json::encode(project)), QCryptographicHash::Sha256).toHex();
}

Screen furthestReachable(const AppState& state) {
    Screen screen = Screen::editor;
    while (!isReachable(state, screen))
        screen = static_cast<Screen>(static_cast<int>(screen) - 1);
    return screen;
}

// Where the user prefers them the names of the match, without what names of files cannot hold.
QString proposedName(const AppState& state, const UserDefaults& defaults) {
    constexpr qsizetype longest = 80; // letters; file systems allow 255 bytes
    static const QRegularExpression forbidden(QStringLiteral(R"([\s/\\:*?"<>|[:cntrl:]]+)"));
    const auto& match = state.matchConfig.value();
    const QString names =
        match && Preferences::isSet(defaults, Preferences::namesOfMatchKey)
            ? displayName(*match).replace(forbidden, QStringLiteral(" ")).trimmed().left(longest)
            : QString();
    return (names.isEmpty() ? QStringLiteral("project") : names) + QStringLiteral(".plp");
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
    m_isRestored = restored.matchConfig.has_value();
    if (Preferences::remembered(context.defaults, savedKey) == fingerprint(restored))
        m_saved = restored;
    if (const auto last = lastMatch(); last && m_isRestored)
        m_context.state.absentVideo = last->videoPath;
    m_bindings.watch(m_context.state.videoURL, [this] {
        if (m_context.state.videoURL.value())
            rememberMatch();
    });
}

void DocumentCommands::newSession() {
    const auto cuts = static_cast<qint64>(m_context.state.cuts.value().size());
    const QString cutsStay = cuts > 0 ? format(m_context.text(L10nKey::documentCutsStay), cuts) : QString();
    const QString title = m_context.text(L10nKey::resetDialogTitle);
    const QString message = m_context.text(L10nKey::resetDialogMessage) + u' ' + cutsStay;
    const QString confirm = m_context.text(L10nKey::resetConfirm);
    const bool isOnlyAboutCuts = cuts > 0 && !isModified();
    if (isOnlyAboutCuts
            ? !m_context.dialogs.confirm(m_window, title, cutsStay, confirm, m_context.text(L10nKey::cancel))
            : !mayThrowAway(title, message.trimmed(), confirm))
        return;
    m_context.state.reset();
    forgetMatchWithoutDocument();
    becomeDocument();
}

// It is gone with the stored session.
void DocumentCommands::forgetMatchWithoutDocument() {
    if (const auto last = readLastMatch(m_context.defaults); last && !last->projectPath)
        storeLastMatch(m_context.defaults, std::nullopt);
}

std::optional<LastMatch> DocumentCommands::lastMatch() const {
    const AppState& state = m_context.state;
    if (state.videoURL.value())
        return std::nullopt;
    auto last = readLastMatch(m_context.defaults);
    if (const auto& match = state.matchConfig.value()) {
        if (!m_isRestored)
            return std::nullopt; // it is being entered
        last = last.value_or(LastMatch());
        last->names = displayName(*match);
        return last;
    }
    return last && last->projectPath ? last : std::nullopt;
}

void DocumentCommands::goOn() {
    AppState& state = m_context.state;
    if (!state.matchConfig.value()) {
        if (const auto last = lastMatch())
            openProjectFile(*last->projectPath);
        return;
    }
    resume();
    state.step = furthestReachable(state);
    Q_EMIT documentChanged();
}

// Gives a restored session what is not stored with it. Its document still counts as unchanged.
void DocumentCommands::resume() {
    const auto last = lastMatch();
    AppState& state = m_context.state;
    if (!last || !state.matchConfig.value())
        return;
    const bool wasModified = isModified();
    if (last->projectPath && QFileInfo(*last->projectPath).isFile())
        state.currentProjectURL = QUrl::fromLocalFile(*last->projectPath);
    state.scoreboardUserScale = last->scoreboardUserScale;
    if (last->videoPath) {
        const media::Recording recording(*last->videoPath, last->videoFiles);
        const auto missing = std::ranges::find_if_not(
            recording.files(), [](const QString& path) { return QFileInfo(path).isFile(); });
        if (missing == recording.files().end()) {
            state.setVideo(recording);
        } else {
            state.videoFiles = recording.files();
            state.absentVideo = *missing;
        }
    }
    if (!wasModified)
        setSaved(projectFrom(state));
    m_isRestored = false;
    Q_EMIT opened();
}

void DocumentCommands::rememberMatch() {
    if (m_context.state.videoURL.value() || m_context.state.currentProjectURL.value())
        storeLastMatch(m_context.defaults, LastMatch::of(m_context.state));
}

void DocumentCommands::openProject() {
    const auto path = m_context.dialogs.chooseFileToOpen(
        m_window, m_context.text(L10nKey::documentOpenDialog), {projectFilter()});
    if (path)
        openProjectFile(*path);
}

bool DocumentCommands::mayOpenAnother() {
    return mayThrowAway(m_context.text(L10nKey::documentOpenTitle),
                        m_context.text(L10nKey::documentOpenMessage),
                        m_context.text(L10nKey::documentOpenConfirm));
}

void DocumentCommands::openWithoutDocument(const ProjectFile& project) {
    apply(project, m_context.state, QUrl());
    m_context.state.currentProjectURL = std::nullopt;
    becomeDocument();
    Q_EMIT opened();
}

void DocumentCommands::openProjectFile(const QString& path) {
    if (!mayOpenAnother())
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

bool DocumentCommands::saveProject() {
    resume();
    const auto& url = m_context.state.currentProjectURL.value();
    return url ? writeTo(url->toLocalFile()) : saveProjectAs();
}

// Another copy is proposed beside the document.
bool DocumentCommands::saveProjectAs() {
    resume();
    QString name = proposedName(m_context.state, m_context.defaults);
    if (const auto& current = m_context.state.currentProjectURL.value()) {
        const QFileInfo file(current->toLocalFile());
        const bool keepsName = Preferences::isSet(m_context.defaults, Preferences::namesOfMatchKey);
        name = file.absolutePath() + u'/' + (keepsName ? file.fileName() : name);
    }
    const auto path = chooseFileToSave(m_context, m_window, m_context.text(L10nKey::documentSaveDialog), name,
                                       projectFilter(), QStringLiteral(".plp"));
    return path && writeTo(*path);
}

bool DocumentCommands::writeTo(const QString& path) {
    const ProjectFile project = projectFrom(m_context.state);
    try {
        auto inputs = inputFiles(m_context.state);
        if (m_context.state.currentProjectURL.value()) // the first of them, which is replaced
            inputs.erase(inputs.begin());
        requireNoInput(path, inputs);
        project.save(path);
    } catch (const DocumentError& error) {
        alert(m_context.text(L10nKey::documentCannotSave), QString::fromUtf8(error.what()));
        return false;
    }
    setSaved(project);
    m_context.state.currentProjectURL = QUrl::fromLocalFile(path);
    remember(path);
    rememberMatch();
    Q_EMIT documentChanged();
    return true;
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
    if (!isModified())
        return true;
    switch (m_context.dialogs.offerToSave(m_window, title, message,
                                          m_context.text(L10nKey::documentSaveFirst), confirm,
                                          m_context.text(L10nKey::cancel))) {
    case Dialogs::Answer::save:
        return saveProject();
    case Dialogs::Answer::goOn:
        return true;
    case Dialogs::Answer::cancel:
        return false;
    }
    Q_UNREACHABLE();
}

// The session has been replaced by a document, or by a fresh one.
void DocumentCommands::becomeDocument() {
    m_isRestored = false;
    m_context.undo.removeAllActions();
    setSaved(projectFrom(m_context.state));
    rememberMatch();
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
