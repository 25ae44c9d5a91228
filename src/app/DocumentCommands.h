// Document commands: open, save, save as, new session, go on with the last match, sample file. Failures are
// shown in alerts and leave the session unchanged.
#pragma once

#include "persistence/LastMatch.h"
#include "persistence/ProjectFile.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;

namespace pointloom {

class DocumentCommands : public QObject {
    Q_OBJECT

public:
    /// `window` is the parent of every dialog. A session restored from the run before counts as saved when
    /// it holds what was last saved or opened.
    DocumentCommands(const UiContext& context, QWidget* window);

    /// Offers to save before unsaved changes are lost.
    void newSession();
    void openProject();
    void openProjectFile(const QString& path);
    /// Offers to save before unsaved changes are lost to another match; false to keep the session.
    [[nodiscard]] bool mayOpenAnother();
    /// The session becomes this match, which has no document yet.
    void openWithoutDocument(const ProjectFile& project);
    /// False when nothing was saved.
    bool saveProject();
    bool saveProjectAs();
    void downloadSampleCSV();

    /// The match to go on with, while no video is open: the one restored from the run before, else the last
    /// one that has a document.
    std::optional<LastMatch> lastMatch() const;
    /// Opens `lastMatch` with its video and document. Where the video is gone, the page that asks for it is
    /// shown.
    void goOn();
    /// Keeps what `lastMatch` of the next start needs. Called before the program ends.
    void rememberMatch();

    /// Whether the session differs from the document that it was last saved to or opened from, or from a
    /// fresh session when there is none.
    bool isModified() const;

    /// Paths of documents opened or saved before, the latest first. None is opened here: a disk may be
    /// asleep.
    QStringList recentProjects() const;
    void forgetRecentProjects();

Q_SIGNALS:
    /// A document, or a fresh session, has replaced the session.
    void sessionReplaced();
    /// A document has become the session; its video, if it has one, is yet to be read.
    void opened();
    /// After each command that may have changed the document or its place.
    void documentChanged();

private:
    bool mayThrowAway(const QString& title, const QString& message, const QString& confirm);
    void forgetMatchWithoutDocument();
    void resume();
    void becomeDocument();
    void setSaved(const ProjectFile& project);
    bool writeTo(const QString& path);
    void remember(const QString& path);
    void storeRecent(const QStringList& paths);
    void alert(const QString& title, const QString& message);

    UiContext m_context;
    QWidget* m_window;
    ProjectFile m_saved;       // as it was written or opened
    bool m_isRestored = false; // the session is that of the run before
    Bindings m_bindings;
};

}
