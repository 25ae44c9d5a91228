#include "app/MainWindow.h"

#include "persistence/ProjectSession.h"
#include "ui/common/Dialogs.h"
#include "ui/common/Preferences.h"
#include "ui/export/QueueIndicator.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>

namespace pointloom {

namespace {

constexpr std::string_view placeKey = "windowGeometry";
constexpr QSize firstSize(900, 640);

QStringList filesIn(const QMimeData& data) {
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile() && TopLevelView::canOpen(url.toLocalFile()))
            files.append(url.toLocalFile());
    }
    return files;
}

}

MainWindow::MainWindow(const UiContext& context, LicenceManager& licence, ExportRunner& exports,
                       CommandBridge& bridge)
    : m_context(context)
    , m_exports(exports)
    , m_content(new TopLevelView(context, licence, exports, bridge, this))
    , m_commands(*menuBar(), context, bridge)
    , m_taskBar(exports) {
    setCentralWidget(m_content);
    setAcceptDrops(true);
    connect(&m_commands.recentProjects(), &QMenu::aboutToShow, this, &MainWindow::fillRecentProjects);
    restorePlace();
    watchDocument();
    watchExports();
}

void MainWindow::watchExports() {
    auto* indicator = new QueueIndicator(m_context, m_exports, menuBar());
    menuBar()->setCornerWidget(indicator);
    connect(indicator, &QueueIndicator::clicked, m_content, [this] { m_content->showQueueSheet = true; });
    connect(&m_exports, &ExportRunner::changed, this, [this] { m_titleUpdate.start(0); });
}

// Without a place from the run before the window keeps its first size.
void MainWindow::restorePlace() {
    resize(firstSize.boundedTo(availableSize(*this)));
    restoreGeometry(Preferences::remembered(m_context.defaults, placeKey));
}

// The title names the document and marks unsaved changes; while exports are left it begins with their
// progress, which task bars show.
void MainWindow::watchDocument() {
    m_titleUpdate.setSingleShot(true);
    connect(&m_titleUpdate, &QTimer::timeout, this, &MainWindow::updateTitle);
    connect(&m_content->documents(), &DocumentCommands::documentChanged, this, &MainWindow::updateTitle);
    AppState& state = m_context.state;
    const auto watch = [&](auto&... stored) {
        m_bindings.watchAll([this] { m_titleUpdate.start(0); }, stored..., state.currentProjectURL,
                            state.language);
    };
    std::apply(watch, documentProperties(state));
    updateTitle();
}

void MainWindow::updateTitle() {
    const auto& document = m_context.state.currentProjectURL.value();
    const bool isModified = m_content->documents().isModified();
    const QString name =
        document ? QFileInfo(document->toLocalFile()).fileName() : m_context.text(L10nKey::documentUntitled);
    const QueueStatus exports = m_exports.queue().status();
    const QString progress = exports.left > 0
                                 ? QStringLiteral("%1 % · ").arg(static_cast<int>(exports.fraction * 100))
                                 : QString();
    setWindowTitle(progress + (document || isModified
                                   ? QStringLiteral("%1[*] — Pointloom").arg(name) // not translated
                                   : QStringLiteral("Pointloom")));
    setWindowFilePath(document ? document->toLocalFile() : QString());
    setWindowModified(isModified);
}

void MainWindow::fillRecentProjects() {
    QMenu& menu = m_commands.recentProjects();
    menu.clear();
    const QStringList paths = m_content->documents().recentProjects();
    for (const QString& path : paths) {
        QAction* action = menu.addAction(QFileInfo(path).fileName().replace(u'&', QStringLiteral("&&")));
        action->setToolTip(path);
        connect(action, &QAction::triggered, this,
                [this, path] { m_content->documents().openProjectFile(path); });
    }
    if (paths.isEmpty())
        menu.addAction(m_context.text(L10nKey::commandNoRecent))->setEnabled(false);
    menu.setToolTipsVisible(true);
    menu.addSeparator();
    QAction* clear = menu.addAction(m_context.text(L10nKey::commandClearRecent));
    clear->setEnabled(!paths.isEmpty());
    connect(clear, &QAction::triggered, &m_content->documents(), &DocumentCommands::forgetRecentProjects);
}

void MainWindow::bringToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    QWidget* front = QApplication::activeModalWidget(); // a dialog stays above what it blocks
    raise();
    if (!front)
        front = this;
    front->raise();
    front->activateWindow();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!m_content->mayClose()) {
        event->ignore();
        return;
    }
    m_context.state.retrySave();
    m_content->documents().rememberMatch();
    Preferences::remember(m_context.defaults, placeKey, saveGeometry());
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!filesIn(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

// There is one session: several videos are one recording, of other files the first is opened.
void MainWindow::dropEvent(QDropEvent* event) {
    const QStringList files = filesIn(*event->mimeData());
    if (files.isEmpty())
        return;
    event->acceptProposedAction();
    // Not within the drop, which the file manager waits for.
    QTimer::singleShot(0, m_content, [content = m_content, files] { content->openFiles(files); });
}

}
