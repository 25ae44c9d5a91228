#include "ui/export/QueueDialog.h"

#include "l10n/Format.h"
#include "ui/export/ExportWords.h"
#include "ui/style/Theme.h"

#include <algorithm>

namespace pointloom {

namespace {

constexpr int listWidth = 90;            // letters
constexpr int listRefreshInterval = 500; // milliseconds

}

QueueDialog::QueueDialog(const UiContext& context, ExportRunner& runner, QWidget* parent)
    : TitledDialog(context, listWidth, parent)
    , m_runner(runner)
    , m_summary(paragraph(this, true))
    , m_fault(Controls::label(Controls::TextRole::warning, this))
    , m_list(new QVBoxLayout)
    , m_pause(Controls::button(Controls::ButtonKind::normal, this))
    , m_removeEnded(Controls::button(Controls::ButtonKind::normal, this)) {
    m_summary->setObjectName(QStringLiteral("summary"));
    m_fault->setWordWrap(true);
    m_list->setSpacing(Space::s);
    body().setSpacing(Space::m);
    body().addWidget(m_summary);
    body().addWidget(m_fault);
    body().addLayout(m_list);
    body().addStretch();
    m_pause->setObjectName(QStringLiteral("pause"));
    m_removeEnded->setObjectName(QStringLiteral("removeEnded"));
    for (QPushButton* button : {m_removeEnded, m_pause}) {
        button->setAutoDefault(false);
        footer().insertWidget(0, button);
    }
    ExportQueue& queue = m_runner.queue();
    connect(m_pause, &QPushButton::clicked, this,
            [&queue] { queue.status().isHeld() ? queue.resume() : queue.pause(); });
    connect(m_removeEnded, &QPushButton::clicked, this, [&queue] { queue.removeEnded(); });
    connect(&m_runner, &ExportRunner::changed, this, &QueueDialog::showQueue);
    connect(&m_refresh, &QTimer::timeout, this, &QueueDialog::showQueue);
    connect(&Theme::shared(), &Theme::changed, this, &QueueDialog::showQueue);
    m_refresh.start(listRefreshInterval);
    inEachLanguage([this] {
        setTitle(this->context().text(L10nKey::queueTitle));
        m_removeEnded->setText(this->context().text(L10nKey::queueRemoveEnded));
        showQueue();
    });
}

void QueueDialog::showQueue() {
    const auto entries = m_runner.queue().entries();
    const QueueStatus status = m_runner.queue().status();
    const Language language = context().state.language;
    m_summary->setText(entries.empty() ? format(context().text(L10nKey::queueEmpty),
                                                keyOrName(Command::exportVideo, context().keys, language))
                                       : ExportWords::queue(status, QDateTime::currentDateTime(), language));
    const QString fault = m_runner.queue().faultOfFile();
    m_fault->setText(format(context().text(L10nKey::queueNotKept), fault));
    m_fault->setVisible(!fault.isEmpty());
    m_pause->setText(context().text(status.lowSpace   ? L10nKey::queueResumeAnyway
                                    : status.isPaused ? L10nKey::queueResume
                                                      : L10nKey::queuePause));
    m_pause->setVisible(status.left > 0);
    m_removeEnded->setVisible(std::ranges::any_of(entries, std::not_fn(&QueuedExport::isLeft)));
    showRows(entries, status);
}

// Rows are kept while their exports are in the list, so that the focus stays where it is.
void QueueDialog::showRows(const std::vector<QueuedExport>& entries, const QueueStatus& status) {
    std::erase_if(m_rows, [&](const auto& row) {
        const bool isGone = std::ranges::find(entries, row.first, &QueuedExport::id) == entries.end();
        if (isGone)
            row.second->deleteLater();
        return isGone;
    });
    const auto isWaiting = [](const QueuedExport& entry) { return entry.state == QueueState::waiting; };
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        QueueRow*& row = m_rows[entry->id];
        if (row == nullptr)
            row = new QueueRow(context(), m_runner.queue(), *entry, this);
        if (const auto place = static_cast<int>(entry - entries.begin()); m_list->indexOf(row) != place)
            m_list->insertWidget(place, row);
        row->show(*entry, status,
                  {.before = std::any_of(entries.begin(), entry, isWaiting),
                   .after = std::any_of(entry + 1, entries.end(), isWaiting)});
    }
}

}
