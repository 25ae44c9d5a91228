// The window's content: shows the session's screen, carries out the menu's commands, and opens help,
// preferences and the licence over the screen.
#pragma once

#include "app/CommandBridge.h"
#include "app/DocumentCommands.h"
#include "app/SampleMatch.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <functional>
#include <memory>
#include <QProperty>
#include <QStackedWidget>
#include <QStringList>
#include <QVersionNumber>

class QDialog;

namespace pointloom {

class EditorView;
class ExportRunner;
class LicenceManager;
class VideoImport;
class WizardView;

class TopLevelView : public QStackedWidget {
    Q_OBJECT

public:
    /// The arguments outlive the view; `bridge` is filled while it exists.
    TopLevelView(const UiContext& context, LicenceManager& licence, ExportRunner& exports,
                 CommandBridge& bridge, QWidget* parent);
    ~TopLevelView() override;

    QProperty<bool> showHelpSheet{false};
    QProperty<bool> showAboutSheet{false};
    QProperty<bool> showNewsSheet{false};
    QProperty<bool> showPreferencesSheet{false};
    QProperty<bool> showQueueSheet{false};
    QProperty<bool> showCrashConsentDialog{false};

    DocumentCommands& documents() { return m_documents; }

    /// Asks whether crash reports may be sent, unless the question was answered before. Called only where
    /// there is an address to send them to.
    void askForCrashConsentOnce();

    /// Shows what is new when the program is newer than at its last start, but not at its first.
    void showNewsOnce();

    /// False when exports are left and the user stays for them. Otherwise they go on at the next start, or
    /// are cancelled.
    [[nodiscard]] bool mayClose();

    /// A project opens, a video imports, anything else is refused with a message. Where a dialog is open,
    /// waits for its end.
    void openFile(const QString& path);
    /// The same for files that were dropped together: several videos are one recording, else the first
    /// counts.
    void openFiles(const QStringList& paths);

    /// True for names of projects and of videos.
    static bool canOpen(const QString& path);

protected:
    bool event(QEvent* event) override;

private:
    void fillBridge();
    void route();
    WizardView* makeWizard();
    EditorView* makeEditor();
    void goTo(Screen screen);
    void offerLastMatch();
    void bindDialog(QProperty<bool>& isShown, std::function<QDialog*()> make);
    static void openDialog(QDialog* dialog);

    void openSample();
    void chooseVideo();
    void importVideo(const QStringList& paths);
    void describeVideo(const media::Recording& recording);
    void makeImport();
    void exportVideo();
    void askForCrashConsent();
    void openWaitingFiles();

    UiContext m_context;
    LicenceManager& m_licence;
    ExportRunner& m_exports;
    CommandBridge& m_bridge;
    DocumentCommands m_documents;
    SampleMatch m_sample;
    std::unique_ptr<VideoImport> m_import; // there while a video is being read
    WizardView* m_wizard = nullptr;        // each screen is made when it is first shown
    EditorView* m_editor = nullptr;
    QStringList m_waitingFiles;
    QVersionNumber m_newsAfter; // of the last start; what is new since is shown once
    Bindings m_bindings;
};

}
