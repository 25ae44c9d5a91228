#include "ui/export/QueueRow.h"

#include "ui/export/ExportWords.h"
#include "ui/export/ResultFile.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QHBoxLayout>

namespace pointloom {

namespace {

constexpr int stateIconSize = 20;
constexpr int rowBarSteps = 1000;

}

QueueRow::QueueRow(const UiContext& context, ExportQueue& queue, const QueuedExport& entry, QWidget* parent)
    : QFrame(parent)
    , m_context(context)
    , m_queue(queue)
    , m_id(entry.id)
    , m_icon(new QLabel(this))
    , m_name(new ElidedLabel(this))
    , m_path(new ElidedLabel(this))
    , m_bar(new QProgressBar(this))
    , m_detail(Controls::label(Controls::TextRole::quiet, this))
    , m_retry(Controls::button(Controls::ButtonKind::normal, this))
    , m_play(addButton("play", QStringLiteral("play")))
    , m_folder(addButton("showInFolder", QStringLiteral("folder")))
    , m_up(addButton("moveUp", QStringLiteral("chevron-up")))
    , m_down(addButton("moveDown", QStringLiteral("chevron-down")))
    , m_remove(addButton("remove", QStringLiteral("close"))) {
    build();
    const auto result = [this] { return ResultFile{m_context, this, m_outputPath}; };
    connect(m_retry, &QPushButton::clicked, this, [this] { m_queue.retry(m_id); });
    connect(m_play, &QToolButton::clicked, this, [result] { result().play(); });
    connect(m_folder, &QToolButton::clicked, this, [result] { result().showInFolder(); });
    connect(m_up, &QToolButton::clicked, this, [this] { m_queue.move(m_id, true); });
    connect(m_down, &QToolButton::clicked, this, [this] { m_queue.move(m_id, false); });
    connect(m_remove, &QToolButton::clicked, this,
            [this] { m_isLeft ? m_queue.cancel(m_id) : m_queue.remove(m_id); });
}

QToolButton* QueueRow::addButton(const char* name, const QString& icon) {
    QToolButton* button = Controls::iconButton(icon, this);
    button->setObjectName(QString::fromUtf8(name));
    return button;
}

void QueueRow::build() {
    setProperty("kind", QStringLiteral("card"));
    Controls::setRole(m_name, Controls::TextRole::strong);
    m_name->setTextFormat(Qt::PlainText);
    Controls::setRole(m_path, Controls::TextRole::quiet);
    m_path->setTextFormat(Qt::PlainText);
    m_bar->setRange(0, rowBarSteps);
    m_bar->setTextVisible(false);
    m_detail->setObjectName(QStringLiteral("detail"));
    m_detail->setTextFormat(Qt::PlainText);
    m_detail->setWordWrap(true);
    m_retry->setObjectName(QStringLiteral("retry"));
    m_retry->setAutoDefault(false);

    auto* lines = new QVBoxLayout;
    lines->setSpacing(Space::xs);
    lines->addWidget(m_name);
    lines->addWidget(m_path);
    lines->addWidget(m_bar);
    lines->addWidget(m_detail);
    auto* row = Controls::layout<QHBoxLayout>(this, {Space::m, Space::s, Space::s, Space::s}, Space::xs);
    row->addWidget(m_icon, 0, Qt::AlignTop);
    row->addSpacing(Space::s);
    row->addLayout(lines, 1);
    row->addSpacing(Space::s);
    for (QWidget* button : std::initializer_list<QWidget*>{m_retry, m_play, m_folder, m_up, m_down, m_remove})
        row->addWidget(button, 0, Qt::AlignTop);
}

void QueueRow::show(const QueuedExport& entry, const QueueStatus& status, Neighbours neighbours) {
    const bool isDone = entry.state == QueueState::done;
    const bool isRunning = entry.state == QueueState::running;
    const bool isWaiting = entry.state == QueueState::waiting;
    m_isLeft = entry.isLeft();
    m_outputPath = isDone ? entry.report.outputPath : entry.job.outputPath;
    setAccessibleName(entry.name);
    m_name->setFullText(entry.name);
    m_path->setFullText(ExportWords::path(m_outputPath));
    m_bar->setAccessibleName(m_context.text(L10nKey::exportProgressName));
    m_bar->setVisible(isRunning);
    m_bar->setValue(isRunning ? static_cast<int>(status.progress.fraction * rowBarSteps) : 0);
    if (isRunning)
        setDetail(Controls::TextRole::quiet, progressText(status));
    else
        showState(entry);
    m_icon->setVisible(!isRunning && !isWaiting);

    m_retry->setText(m_context.text(L10nKey::retry));
    m_retry->setVisible(!m_isLeft && !isDone);
    Controls::setName(m_play, m_context.text(L10nKey::exportPlay));
    m_play->setVisible(isDone);
    Controls::setName(m_folder, m_context.text(L10nKey::showInFinder));
    m_folder->setVisible(isDone);
    Controls::setName(m_up, m_context.text(L10nKey::queueMoveUp));
    m_up->setVisible(isWaiting);
    m_up->setEnabled(neighbours.before);
    Controls::setName(m_down, m_context.text(L10nKey::queueMoveDown));
    m_down->setVisible(isWaiting);
    m_down->setEnabled(neighbours.after);
    Controls::setName(m_remove, m_context.text(m_isLeft ? L10nKey::queueCancel : L10nKey::queueRemove));
}

QString QueueRow::progressText(const QueueStatus& status) const {
    const Language language = m_context.state.language;
    if (status.isHeld())
        return m_context.text(L10nKey::queuePaused);
    return status.progress.fraction > 0 ? ExportWords::progress(status.progress, status.elapsed, language)
                                        : m_context.text(L10nKey::exportPreparing);
}

void QueueRow::showState(const QueuedExport& entry) {
    using Controls::TextRole;
    const auto showIcon = [this](const char* name, const QColor& color) {
        m_icon->setPixmap(Icons::pixmap(QString::fromUtf8(name), stateIconSize, color, devicePixelRatioF()));
    };
    switch (entry.state) {
    case QueueState::waiting:
    case QueueState::running:
        return setDetail(TextRole::quiet, m_context.text(L10nKey::queueWaiting));
    case QueueState::done: {
        QStringList lines{m_context.text(L10nKey::queueFinished)};
        lines += ExportWords::flaws(entry.report, m_context.state.language);
        showIcon("check", tokens().success);
        return setDetail(lines.size() > 1 ? TextRole::warning : TextRole::quiet, lines.join(u'\n'));
    }
    case QueueState::failed:
        showIcon("warning", tokens().danger);
        return setDetail(TextRole::danger,
                         entry.message.isEmpty() ? m_context.text(L10nKey::queueInterrupted) : entry.message);
    case QueueState::cancelled:
        showIcon("close", tokens().quietText);
        return setDetail(TextRole::quiet, m_context.text(L10nKey::queueCancelled));
    }
    Q_UNREACHABLE();
}

void QueueRow::setDetail(Controls::TextRole role, const QString& text) {
    if (m_detail->text() == text)
        return;
    Controls::setRole(m_detail, role);
    m_detail->setText(text);
    m_detail->setAccessibleName(text);
}

}
