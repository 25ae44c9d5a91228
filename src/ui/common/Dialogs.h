// Every question that the program asks in a window of its own; tests answer in people's place.
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

class QWidget;

namespace pointloom {

class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// The file that was chosen; empty when the person cancelled. `filters` as Qt writes them,
    /// "Project (*.plp)".
    virtual std::optional<QString> chooseFileToOpen(QWidget* parent, const QString& title,
                                                    const QStringList& filters) = 0;
    virtual std::optional<QString> chooseFileToSave(QWidget* parent, const QString& title,
                                                    const QString& proposedName,
                                                    const QStringList& filters) = 0;

    virtual void alert(QWidget* parent, const QString& title, const QString& message) = 0;

    /// True when the person chose `confirm`.
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

}
