#include "ui/export/ExportStage.h"

#include "ui/export/ExportWords.h"
#include "ui/export/ResultFile.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QFileInfo>
#include <QHBoxLayout>

namespace pointloom {

namespace {

constexpr int iconSize = 22;
constexpr int barSteps = 1000;
constexpr int refreshInterval = 200; // milliseconds

}

ExportStage::ExportStage(const UiContext& context, const ExportRunner& runner, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_runner(runner)
    , m_icon(new QLabel(this))
    , m_heading(Controls::label(Controls::TextRole::section, this))
    , m_detail(Controls::label(Controls::TextRole::body, this))
    , m_bar(new QProgressBar(this)) {
    build();
    bind();
}

void ExportStage::build() {
    m_heading->setObjectName(QStringLiteral("stageHeading"));
    m_detail->setObjectName(QStringLiteral("stageDetail"));
    m_detail->setWordWrap(true);
    m_detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_bar->setRange(0, barSteps);
    m_bar->setTextVisible(false);

    m_another = addButton("exportAnother", false, &ExportStage::anotherRequested);
    m_options = addButton("changeOptions", false, &ExportStage::optionsRequested);
    m_folder = addButton("showInFolder", false, &ExportStage::folderRequested);
    m_play = addButton("play", false, &ExportStage::playRequested);
    m_cancel = addButton("cancelExport", false, &ExportStage::cancelRequested);
    m_retry = addButton("retry", true, &ExportStage::retryRequested);
    m_close = addButton("closeSheet", true, &ExportStage::closeRequested);
    m_continue = addButton("continueEditing", true, &ExportStage::closeRequested);
    m_resume = addButton("resumeExport", false, &ExportStage::resumeRequested);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Space::s);
    buttons->addWidget(m_another);
    buttons->addWidget(m_options);
    buttons->addStretch();
    for (QPushButton* button : {m_folder, m_play, m_retry, m_close, m_resume, m_cancel, m_continue})
        buttons->addWidget(button);
    auto* heading = new QHBoxLayout;
    heading->setSpacing(Space::s);
    heading->addWidget(m_icon);
    heading->addWidget(m_heading, 1);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(Space::s);
    whole->addLayout(heading);
    whole->addWidget(m_bar);
    whole->addWidget(m_detail);
    whole->addWidget(m_damageRow = makeDamageRow());
    whole->addLayout(buttons);
}

// The damage of the source video.
QWidget* ExportStage::makeDamageRow() {
    auto* row = new QWidget(this);
    m_damageIcon = new QLabel(row);
    m_damage = Controls::label(Controls::TextRole::warning, row);
    m_damage->setObjectName(QStringLiteral("stageDamage"));
    m_damage->setWordWrap(true);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, Space::xs);
    layout->setSpacing(Space::s);
    layout->addWidget(m_damageIcon, 0, Qt::AlignTop);
    layout->addWidget(m_damage, 1);
    return row;
}

QPushButton* ExportStage::addButton(const char* name, bool isPrimary, void (ExportStage::*chosen)()) {
    QPushButton* button =
        Controls::button(isPrimary ? Controls::ButtonKind::primary : Controls::ButtonKind::normal, this);
    button->setObjectName(QString::fromUtf8(name));
    connect(button, &QPushButton::clicked, this, chosen);
    return button;
}

void ExportStage::bind() {
    AppState& state = m_context.state;
    const auto result = [this] { return ResultFile{m_context, this, m_runner.report().outputPath}; };
    connect(this, &ExportStage::playRequested, this, [result] { result().play(); });
    connect(this, &ExportStage::folderRequested, this, [result] { result().showInFolder(); });
    m_refresh.setInterval(refreshInterval);
    connect(&m_refresh, &QTimer::timeout, this, &ExportStage::showProgress);
    connect(&Theme::shared(), &Theme::changed, this, &ExportStage::showStage);
    m_bindings.watch(state.language, [this] { showWords(); });
    m_bindings.watchAll([this] { showStage(); }, state.exportStatus, state.language);
}

void ExportStage::showWords() {
    m_another->setText(m_context.text(L10nKey::exportAnother));
    m_options->setText(m_context.text(L10nKey::exportChangeOptions));
    m_folder->setText(m_context.text(L10nKey::showInFinder));
    m_play->setText(m_context.text(L10nKey::exportPlay));
    m_cancel->setText(m_context.text(L10nKey::cancel));
    m_retry->setText(m_context.text(L10nKey::retry));
    m_close->setText(m_context.text(L10nKey::done));
    m_continue->setText(m_context.text(L10nKey::queueContinue));
    m_resume->setText(m_context.text(L10nKey::queueResumeAnyway));
    m_bar->setAccessibleName(m_context.text(L10nKey::exportProgressName));
}

void ExportStage::showStage() {
    const AppState::ExportStatus status = m_context.state.exportStatus;
    const bool isExporting = status.stage == Stage::exporting;
    const bool isDone = status.stage == Stage::done;
    const bool isFailed = status.stage == Stage::error;
    m_bar->setVisible(isExporting);
    m_cancel->setVisible(isExporting);
    m_cancel->setEnabled(true);
    m_continue->setVisible(isExporting);
    m_resume->hide();
    for (QPushButton* button : {m_another, m_folder, m_play, m_close})
        button->setVisible(isDone);
    m_retry->setVisible(isFailed);
    m_options->setVisible(isFailed);

    m_icon->setVisible(isDone || isFailed);
    m_icon->setPixmap(
        isFailed ? Icons::pixmap(QStringLiteral("warning"), iconSize, tokens().danger, devicePixelRatioF())
                 : Icons::pixmap(QStringLiteral("check"), iconSize, tokens().success, devicePixelRatioF()));
    m_damageRow->hide();
    if (isExporting) {
        m_heading->setText(m_context.text(L10nKey::exporting));
        m_refresh.start();
        showProgress();
        m_continue->setFocus();
        return;
    }
    m_refresh.stop();
    if (isDone) {
        m_heading->setText(m_context.text(L10nKey::exportComplete));
        showResult();
        m_close->setFocus();
    } else if (isFailed) {
        m_heading->setText(m_context.text(L10nKey::exportFailed));
        m_detail->setText(status.message);
        m_retry->setFocus();
    }
    m_detail->setAccessibleName(m_detail->text());
}

void ExportStage::showResult() {
    const Language language = m_context.state.language;
    const QFileInfo file(m_runner.report().outputPath);
    QStringList lines{
        QStringLiteral("%1 · %2").arg(file.fileName(), ExportWords::bytes(file.size(), language))};
    if (const auto& fallback = m_runner.report().fallback)
        lines += format(m_context.text(L10nKey::exportSoftwareUsed),
                        QString::fromUtf8(media::nameOf(fallback->requested)));
    m_detail->setText(lines.join(u'\n'));
    const QStringList flaws = ExportWords::flaws(m_runner.report(), language);
    m_damageIcon->setPixmap(
        Icons::pixmap(QStringLiteral("warning"), iconSize, tokens().warning, devicePixelRatioF()));
    m_damage->setText(flaws.join(u'\n'));
    m_damageRow->setVisible(!flaws.isEmpty());
}

void ExportStage::showProgress() {
    const QueueStatus status = m_runner.queue().status();
    const ExportProgress progress = m_runner.progress();
    const Language language = m_context.state.language;
    m_bar->setValue(static_cast<int>(progress.fraction * barSteps));
    m_resume->setVisible(status.lowSpace && !m_runner.isStopping());
    if (m_runner.isStopping())
        m_detail->setText(m_context.text(L10nKey::exportStopping));
    else if (status.lowSpace)
        m_detail->setText(
            format(m_context.text(L10nKey::queueLowSpace), ExportWords::bytes(*status.lowSpace, language)));
    else if (progress.fraction <= 0)
        m_detail->setText(m_context.text(L10nKey::exportPreparing));
    else if (progress.fraction >= 1)
        m_detail->setText(m_context.text(L10nKey::exportFinishing));
    else
        m_detail->setText(ExportWords::progress(progress, status.elapsed, language));
}

void ExportStage::showStopping() {
    m_cancel->setEnabled(false);
    showProgress();
}

}
