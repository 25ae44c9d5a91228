// Questions in windows of their own, behind an interface through which tests answer; sizes and places of
// windows.
#pragma once

#include <optional>
#include <QSize>
#include <QString>
#include <QStringList>

class QWidget;

namespace pointloom {

struct UiContext;

class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// The file that was chosen; empty when the user cancelled. `filters` as Qt writes them,
    /// "Project (*.plp)".
    virtual std::optional<QString> chooseFileToOpen(QWidget* parent, const QString& title,
                                                    const QStringList& filters) = 0;
    virtual std::optional<QString> chooseFileToSave(QWidget* parent, const QString& title,
                                                    const QString& proposedName,
                                                    const QStringList& filters) = 0;

    virtual void alert(QWidget* parent, const QString& title, const QString& message) = 0;

    /// True when the user chose `confirm`.
    virtual bool confirm(QWidget* parent, const QString& title, const QString& message,
                         const QString& confirm, const QString& cancel) = 0;
};

/// The desktop's own dialogs.
class DesktopDialogs final : public Dialogs {
public:
    std::optional<QString> chooseFileToOpen(QWidget* parent, const QString& title,
                                            const QStringList& filters) override;
    std::optional<QString> chooseFileToSave(QWidget* parent, const QString& title,
                                            const QString& proposedName, const QStringList& filters) override;
    void alert(QWidget* parent, const QString& title, const QString& message) override;
    bool confirm(QWidget* parent, const QString& title, const QString& message, const QString& confirm,
                 const QString& cancel) override;
};

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
