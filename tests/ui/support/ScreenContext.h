// A session with what screens need around it; the user's answers to dialogs are prepared by the test.
#pragma once

#include "persistence/UserDefaults.h"
#include "support/Sessions.h"
#include "ui/common/UiContext.h"
#include "ui/style/Theme.h"

#include <QApplication>
#include <QTemporaryDir>

namespace pointloom::test {

/// Answers every question with what the test prepared, and remembers what was shown.
class PreparedDialogs final : public Dialogs {
public:
    std::optional<QString> fileToOpen;
    std::optional<QString> fileToSave;
    bool confirms = true;
    Answer answer = Answer::goOn; // to offers to save
    QStringList shown;            // titles and messages
    QString proposedName;         // by the last dialog that saves
    QStringList filters;          // of the last dialog for a file
    QStringList buttons;          // of the last question

    std::optional<QString> chooseFileToOpen(QWidget*, const QString& title,
                                            const QStringList& given) override {
        shown << title;
        filters = given;
        return fileToOpen;
    }
    std::optional<QString> chooseFileToSave(QWidget*, const QString& title, const QString& name,
                                            const QStringList& given) override {
        shown << title;
        proposedName = name;
        filters = given;
        return fileToSave;
    }
    QStringList chooseFilesToOpen(QWidget* parent, const QString& title, const QStringList& given) override {
        const auto path = chooseFileToOpen(parent, title, given);
        return path ? QStringList{*path} : QStringList();
    }
    void alert(QWidget*, const QString& title, const QString& message) override { shown << title << message; }
    bool confirm(QWidget*, const QString& title, const QString& message, const QString& accept,
                 const QString& refuse) override {
        shown << title << message;
        buttons = {accept, refuse};
        return confirms;
    }
    Answer offerToSave(QWidget*, const QString& title, const QString& message, const QString& save,
                       const QString& goOn, const QString& cancel) override {
        shown << title << message;
        buttons = {save, goOn, cancel};
        return answer;
    }
};

/// Declare it before the screen that uses its context.
struct ScreenContext {
    ScreenContext() { Theme::shared().apply(*qApp, ThemeChoice::dark); }

    QTemporaryDir folder;
    RecordingStore store;
    AppState state{&store};
    UndoStack undo;
    UserDefaults defaults{folder.filePath(QStringLiteral("settings.conf"))};
    PreparedDialogs dialogs;
    CommandKeys keys;
    UiContext context{state, undo, defaults, dialogs, keys};
};

}
