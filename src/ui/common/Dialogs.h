// Questions in windows of their own, behind an interface through which tests answer; sizes and places of
// windows.
#pragma once

#include <optional>
#include <QSize>
#include <QString>
#include <QStringList>

class QWidget;

namespace pointloom {

class AppState;
class UserDefaults;
struct UiContext;

class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// The file that was chosen; empty when the user cancelled. `filters` as Qt writes them,
    /// "Project (*.plp)". A proposed name may have a folder.
    virtual std::optional<QString> chooseFileToOpen(QWidget* parent, const QString& title,
                                                    const QStringList& filters) = 0;
    virtual std::optional<QString> chooseFileToSave(QWidget* parent, const QString& title,
                                                    const QString& proposedName,
                                                    const QStringList& filters) = 0;

    /// Several files of one folder; none when the user cancelled.
    virtual QStringList chooseFilesToOpen(QWidget* parent, const QString& title,
                                          const QStringList& filters) = 0;

    virtual void alert(QWidget* parent, const QString& title, const QString& message) = 0;

    /// True when the user chose `confirm`. Enter and Escape are `cancel`.
    virtual bool confirm(QWidget* parent, const QString& title, const QString& message,
                         const QString& confirm, const QString& cancel) = 0;

    enum class Answer { save, goOn, cancel };

    /// Before unsaved changes are lost. Enter is `save`, Escape is `cancel`.
    virtual Answer offerToSave(QWidget* parent, const QString& title, const QString& message,
                               const QString& save, const QString& goOn, const QString& cancel) = 0;
};

/// The folder in which a dialog for files with the first ending of `filter`, "Project (*.plp)", begins: that
/// in which the last one ended, else the one of the video, else the user's documents. Folders that are gone
/// are passed over.
QString firstFolder(const AppState& session, const UserDefaults& defaults, const QString& filter);
/// Keeps the folder of a file that was chosen, for later starts too.
void rememberFolder(UserDefaults& defaults, const QString& filter, const QString& chosenFile);

/// The desktop's own dialogs.
class DesktopDialogs final : public Dialogs {
public:
    /// Both outlive this.
    DesktopDialogs(const AppState& session, UserDefaults& defaults)
        : m_session(session)
        , m_defaults(defaults) {}

    std::optional<QString> chooseFileToOpen(QWidget* parent, const QString& title,
                                            const QStringList& filters) override;
    std::optional<QString> chooseFileToSave(QWidget* parent, const QString& title,
                                            const QString& proposedName, const QStringList& filters) override;
    QStringList chooseFilesToOpen(QWidget* parent, const QString& title, const QStringList& filters) override;
    void alert(QWidget* parent, const QString& title, const QString& message) override;
    bool confirm(QWidget* parent, const QString& title, const QString& message, const QString& confirm,
                 const QString& cancel) override;
    Answer offerToSave(QWidget* parent, const QString& title, const QString& message, const QString& save,
                       const QString& goOn, const QString& cancel) override;

private:
    const AppState& m_session;
    UserDefaults& m_defaults;
};

/// What `DesktopDialogs::alert` shows, where there is no session yet.
void showAlert(QWidget* parent, const QString& title, const QString& message);

/// Asks for a file to save as, offering files that end in `ending`, such as ".plp". A name that ends
/// otherwise gets it added, however many dots it has; when a file of that name exists, which the dialog did
/// not ask about, this asks. Empty when the user cancelled.
std::optional<QString> chooseFileToSave(const UiContext& context, QWidget* parent, const QString& title,
                                        const QString& proposedName, const QString& filter,
                                        const QString& ending);

/// The largest size inside a window's frame on its screen, in points.
QSize availableSize(const QWidget& window);

/// Moves a dialog over the middle of the window that it belongs to, within the screen. Called once its size
/// is known, before `QDialog::showEvent`, which guesses the frame and is up to 40 points off.
void placeOverWindow(QWidget& dialog);

}
