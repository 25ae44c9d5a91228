#include "app/TopLevelView.h"

#include "files/FileDescriptor.h"
#include "l10n/Format.h"
#include "persistence/UserDefaults.h"
#include "ui/common/Preferences.h"
#include "ui/common/VideoImport.h"
#include "ui/editor/EditorView.h"
#include "ui/export/ExportSheet.h"
#include "ui/export/FramePreview.h"
#include "ui/export/QueueDialog.h"
#include "ui/settings/AboutDialog.h"
#include "ui/settings/HelpDialog.h"
#include "ui/settings/LicenceDialog.h"
#include "ui/settings/NewsDialog.h"
#include "ui/settings/PreferencesDialog.h"
#include "ui/wizard/WizardView.h"

#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>

namespace pointloom {

namespace {

constexpr std::string_view consentAskedKey = "crashConsentAsked";
constexpr std::string_view newsSeenKey = "newsSeen"; // version of the program at its last start
constexpr QSize smallestContent(760, 440);           // leaves a frame and a menu bar of 800 by 480

bool isProject(const QString& path) {
    return QFileInfo(path).suffix().compare(QStringLiteral("plp"), Qt::CaseInsensitive) == 0;
}

bool isVideo(const QString& path) {
    static const QStringList endings = {QStringLiteral("mp4"), QStringLiteral("mov"), QStringLiteral("m4v")};
    return endings.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive);
}

}

TopLevelView::TopLevelView(const UiContext& context, LicenceManager& licence, ExportRunner& exports,
                           CommandBridge& bridge, QWidget* parent)
    : QStackedWidget(parent)
    , m_context(context)
    , m_licence(licence)
    , m_exports(exports)
    , m_bridge(bridge)
    , m_documents(context, this)
    , m_sample(context, this) {
    setMinimumSize(smallestContent);
    connect(&m_documents, &DocumentCommands::sessionReplaced, this, [this] {
        m_import.reset();
        if (m_wizard)
            m_wizard->readSession();
    });
    connect(&m_documents, &DocumentCommands::opened, this, [this] {
        if (const auto recording = m_context.state.recording())
            describeVideo(*recording);
    });
    connect(&m_documents, &DocumentCommands::documentChanged, this, &TopLevelView::offerLastMatch);
    connect(&m_sample, &SampleMatch::ready, this,
            [this] { m_documents.openWithoutDocument(SampleMatch::project()); });
    fillBridge();
    m_bindings.watch(m_context.state.step, [this] { route(); });
    m_bindings.watchAll([this] { offerLastMatch(); }, m_context.state.videoURL, m_context.state.matchConfig);
    bindDialog(showHelpSheet, [this] {
        auto* help = new HelpDialog(m_context, this);
        connect(help, &HelpDialog::sampleRequested, &m_documents, &DocumentCommands::downloadSampleCSV);
        return help;
    });
    bindDialog(showAboutSheet, [this] { return new AboutDialog(m_context, this); });
    bindDialog(showNewsSheet, [this] {
        return new NewsDialog(m_context, std::exchange(m_newsAfter, QVersionNumber()), this);
    });
    bindDialog(showPreferencesSheet, [this] {
        auto* preferences = new PreferencesDialog(m_context, this);
        connect(preferences, &PreferencesDialog::hardwareDecodingChosen, this, [this](bool isOn) {
            if (m_editor)
                m_editor->setHardwareDecoding(isOn);
        });
        connect(preferences, &PreferencesDialog::quickPicturesChosen, this, [this](bool isOn) {
            if (m_editor)
                m_editor->setQuickPictures(isOn);
        });
        return preferences;
    });
    bindDialog(showQueueSheet, [this] { return new QueueDialog(m_context, m_exports, this); });
    bindDialog(m_context.state.showLicenseSheet,
               [this] { return new LicenceDialog(m_context, m_licence, this); });
    m_bindings.watch(showCrashConsentDialog, [this] {
        if (showCrashConsentDialog)
            QTimer::singleShot(0, this, &TopLevelView::askForCrashConsent);
    });
}

TopLevelView::~TopLevelView() {
    m_bridge = CommandBridge();
}

void TopLevelView::fillBridge() {
    m_bridge.openVideo = [this] { chooseVideo(); };
    m_bridge.exportVideo = [this] { exportVideo(); };
    m_bridge.reset = [this] { m_documents.newSession(); };
    m_bridge.openProject = [this] { m_documents.openProject(); };
    m_bridge.saveProject = [this] { m_documents.saveProject(); };
    m_bridge.saveProjectAs = [this] { m_documents.saveProjectAs(); };
    m_bridge.showLicense = [this] { m_context.state.showLicenseSheet = true; };
    m_bridge.showHelp = [this] { showHelpSheet = true; };
    m_bridge.showAbout = [this] { showAboutSheet = true; };
    m_bridge.downloadSampleCSV = [this] { m_documents.downloadSampleCSV(); };
    m_bridge.openSample = [this] { openSample(); };
    m_bridge.showNews = [this] { showNewsSheet = true; };
    m_bridge.showQueue = [this] { showQueueSheet = true; };
    m_bridge.showPreferences = [this] { showPreferencesSheet = true; };
    m_bridge.runInEditor = [this](Command command) {
        if (m_editor && m_context.state.step == Screen::editor)
            m_editor->run(command);
    };
    m_bridge.goTo = [this](Screen screen) { goTo(screen); };
}

void TopLevelView::route() {
    const bool isWizard = m_context.state.step != Screen::editor;
    if (isWizard && !m_wizard)
        addWidget(m_wizard = makeWizard());
    if (!isWizard && !m_editor)
        addWidget(m_editor = makeEditor());
    setCurrentWidget(isWizard ? static_cast<QWidget*>(m_wizard) : m_editor);
    if (!isWizard)
        m_editor->setFocus(); // its keys work at once, rather than those of the first thing on it
}

WizardView* TopLevelView::makeWizard() {
    auto* wizard = new WizardView(m_context, this);
    wizard->offerMatch(m_documents.lastMatch());
    connect(wizard, &WizardView::goOnRequested, &m_documents, &DocumentCommands::goOn);
    connect(wizard, &WizardView::newMatchRequested, &m_documents, &DocumentCommands::newSession);
    connect(wizard, &WizardView::sampleRequested, this, &TopLevelView::openSample);
    return wizard;
}

void TopLevelView::offerLastMatch() {
    if (m_wizard)
        m_wizard->offerMatch(m_documents.lastMatch());
}

// The wizard confirms the page that is left; the editor has nothing to confirm.
void TopLevelView::goTo(Screen screen) {
    if (!isReachable(m_context.state, screen))
        return;
    if (m_context.state.step == Screen::editor)
        m_context.state.step = screen;
    else
        m_wizard->goTo(screen);
}

EditorView* TopLevelView::makeEditor() {
    auto* editor = new EditorView(m_context, this);
    connect(editor, &EditorView::exportRequested, this, &TopLevelView::exportVideo);
    connect(editor, &EditorView::previewFrameRequested, this,
            [this] { openDialog(new FramePreview(m_context, this)); });
    connect(editor, &EditorView::importRequested, this, &TopLevelView::chooseVideo);
    connect(editor, &EditorView::screenRequested, this, &TopLevelView::goTo);
    connect(editor, &EditorView::editNamesRequested, this, [this] { goTo(Screen::match); });
    connect(editor, &EditorView::nameRequested, this, [this](Side side) {
        goTo(Screen::match);
        m_wizard->editName(side);
    });
    return editor;
}

// Keeps a dialog open while `isShown` is true.
void TopLevelView::bindDialog(QProperty<bool>& isShown, std::function<QDialog*()> make) {
    const auto dialog = std::make_shared<QPointer<QDialog>>();
    m_bindings.watch(isShown, [&isShown, dialog, make = std::move(make)] {
        if (!isShown) {
            if (*dialog)
                (*dialog)->close();
            return;
        }
        *dialog = make();
        connect(*dialog, &QDialog::finished, *dialog, [&isShown] { isShown = false; });
        openDialog(*dialog);
    });
}

void TopLevelView::openDialog(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void TopLevelView::openSample() {
    if (m_documents.mayOpenAnother())
        m_sample.prepare();
}

void TopLevelView::chooseVideo() {
    const QStringList paths = m_context.dialogs.chooseFilesToOpen(
        this, m_context.text(L10nKey::selectVideoFile),
        {QStringLiteral("MP4, MOV, M4V (*.mp4 *.mov *.m4v *.MP4 *.MOV *.M4V)")});
    if (!paths.isEmpty())
        importVideo(paths);
}

void TopLevelView::importVideo(const QStringList& paths) {
    makeImport();
    connect(m_import.get(), &VideoImport::imported, this, [this] {
        AppState& state = m_context.state;
        // When the pages before are complete, the wizard shows the imported video.
        if (state.step < Screen::video && isReachable(state, Screen::video))
            m_wizard->goTo(Screen::video);
        else if (state.step == Screen::editor)
            m_editor->setFocus();
        else if (state.step == Screen::video)
            m_wizard->takeFocus();
    });
    m_import->start(paths);
}

// Length and size of the video of a document.
void TopLevelView::describeVideo(const media::Recording& recording) {
    makeImport();
    m_import->describe(recording);
}

// A later video or another document replaces one that is still being read.
void TopLevelView::makeImport() {
    m_import = std::make_unique<VideoImport>(m_context, this);
    connect(m_import.get(), &VideoImport::failed, this, [this](const QString& message) {
        m_context.dialogs.alert(this, m_context.text(L10nKey::couldNotReadMetadata), message);
    });
}

bool TopLevelView::canOpen(const QString& path) {
    return isProject(path) || isVideo(path);
}

void TopLevelView::openFiles(const QStringList& paths) {
    if (paths.size() > 1 && !QApplication::activeModalWidget() && std::ranges::all_of(paths, isVideo))
        importVideo(paths);
    else
        openFile(paths.first());
}

void TopLevelView::openFile(const QString& path) {
    if (QApplication::activeModalWidget()) {
        m_waitingFiles.append(path);
        return;
    }
    if (isProject(path))
        m_documents.openProjectFile(path);
    else if (isVideo(path))
        importVideo({path});
    else
        m_context.dialogs.alert(
            this, m_context.text(L10nKey::cannotOpenTitle),
            format(m_context.text(L10nKey::cannotOpenMessage), QFileInfo(path).fileName()));
}

bool TopLevelView::event(QEvent* event) {
    // Sent when the last dialog over the window is closed.
    if (event->type() == QEvent::WindowUnblocked)
        QTimer::singleShot(0, this, &TopLevelView::openWaitingFiles);
    return QStackedWidget::event(event);
}

void TopLevelView::openWaitingFiles() {
    for (const QString& path : std::exchange(m_waitingFiles, {}))
        openFile(path);
}

// In the wizard there may be nothing to export yet: the titles of the pages that are not done are named.
void TopLevelView::exportVideo() {
    const AppState& state = m_context.state;
    QString missing;
    const auto require = [&](bool isThere, L10nKey page) {
        if (!isThere)
            missing += QStringLiteral("\n• ") + m_context.text(page);
    };
    require(state.selectedTemplate.value().has_value(), L10nKey::chooseTemplate);
    require(state.matchConfig.value().has_value(), L10nKey::matchConfig);
    require(state.videoURL.value().has_value(), L10nKey::importVideo);
    if (!missing.isEmpty()) {
        m_context.dialogs.alert(this, m_context.text(L10nKey::cannotExportTitle),
                                m_context.text(L10nKey::cannotExportMessage) + missing);
        return;
    }
    openDialog(new ExportSheet(m_context, m_exports, this));
}

bool TopLevelView::mayClose() {
    ExportQueue& queue = m_exports.queue();
    if (queue.status().left == 0)
        return true;
    if (!queue.isKept())
        return m_context.dialogs.confirm(
            this, m_context.text(L10nKey::stopExportTitle), m_context.text(L10nKey::stopExportMessage),
            m_context.text(L10nKey::stopExportConfirm), m_context.text(L10nKey::cancel));
    const auto answer = m_context.dialogs.offerToSave(
        this, m_context.text(L10nKey::queueCloseTitle), m_context.text(L10nKey::queueCloseMessage),
        m_context.text(L10nKey::queueCloseLater), m_context.text(L10nKey::queueCloseCancel),
        m_context.text(L10nKey::exportKeepExporting));
    if (answer == Dialogs::Answer::goOn)
        queue.cancelAll();
    return answer != Dialogs::Answer::cancel;
}

void TopLevelView::showNewsOnce() {
    const QString version = QCoreApplication::applicationVersion();
    const QString seen = QString::fromUtf8(Preferences::remembered(m_context.defaults, newsSeenKey));
    if (seen == version)
        return;
    Preferences::remember(m_context.defaults, newsSeenKey, version.toUtf8());
    m_newsAfter = QVersionNumber::fromString(seen);
    showNewsSheet = !m_newsAfter.isNull() && NewsDialog::hasNewsAfter(m_newsAfter);
}

void TopLevelView::askForCrashConsentOnce() {
    try {
        if (!m_context.defaults.boolean(consentAskedKey))
            showCrashConsentDialog = true;
    } catch (const FileError&) {
        // Settings that cannot be read could not keep the answer either.
    }
}

void TopLevelView::askForCrashConsent() {
    const bool agrees = m_context.dialogs.confirm(
        this, m_context.text(L10nKey::consentTitle), m_context.text(L10nKey::consentMessage),
        m_context.text(L10nKey::consentEnable), m_context.text(L10nKey::consentDecline));
    showCrashConsentDialog = false;
    try {
        m_context.defaults.setBoolean(Preferences::crashReportsKey, agrees);
        m_context.defaults.setBoolean(consentAskedKey, true);
    } catch (const FileError& error) {
        m_context.dialogs.alert(this, m_context.text(L10nKey::consentNotKept),
                                QString::fromUtf8(error.what()));
    }
}

}
