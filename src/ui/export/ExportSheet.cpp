#include "ui/export/ExportSheet.h"

#include "export/Captions.h"
#include "persistence/ProjectSession.h"
#include "ui/common/Dialogs.h"
#include "ui/common/PartsBox.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QHBoxLayout>
#include <QShowEvent>

namespace pointloom {

namespace {

using Stage = AppState::ExportStatus::Stage;

constexpr QSize usualSize(960, 660);
constexpr QSize smallestSize(700, 400);
constexpr int optionsWidth = 58; // letters

}

ExportSheet::ExportSheet(const UiContext& context, ExportRunner& runner, QWidget* parent)
    : QDialog(parent)
    , m_context(context)
    , m_runner(runner)
    , m_title(Controls::label(Controls::TextRole::title, this))
    , m_still(new StillView(this))
    , m_moveHint(Controls::label(Controls::TextRole::quiet, this))
    , m_summary(new ExportSummary(context, this))
    , m_options(new ExportOptionsPanel(context, this))
    , m_optionsArea(new QScrollArea(this))
    , m_setup(nullptr)
    , m_destination(new DestinationRow(context, this))
    , m_cancel(Controls::button(Controls::ButtonKind::normal, this))
    , m_start(Controls::button(Controls::ButtonKind::primary, this))
    , m_stage(new ExportStage(context, m_runner, this)) {
    build();
    bind();
    m_destination->proposeNewFile();
    updateExport();
    m_start->setFocus();
}

ExportSheet::~ExportSheet() {
    m_runner.release();
}

void ExportSheet::build() {
    m_optionsArea->setWidget(m_options);
    m_options->setMinimumHeight(
        1); // else its texts count as narrow as they may become, and a scroll bar shows
    m_optionsArea->setWidgetResizable(true);
    m_optionsArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_optionsArea->setFixedWidth(fontMetrics().averageCharWidth() * optionsWidth);
    m_optionsArea->setFocusPolicy(Qt::NoFocus);
    m_still->setObjectName(QStringLiteral("still"));
    m_setup = makeSetup();

    auto* picture = new QVBoxLayout;
    picture->setSpacing(Space::m);
    picture->addWidget(m_still, 1);
    picture->addWidget(m_moveHint, 0, Qt::AlignHCenter);
    picture->addWidget(m_summary);
    auto* middle = new QHBoxLayout;
    middle->setSpacing(Space::xl);
    middle->addLayout(picture, 1);
    middle->addWidget(m_optionsArea);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(Space::xl, Space::l, Space::xl, Space::l);
    whole->setSpacing(Space::m);
    whole->addWidget(m_title);
    whole->addLayout(middle, 1);
    whole->addWidget(Controls::separator(Qt::Horizontal, this));
    whole->addWidget(m_setup);
    whole->addWidget(m_stage);
    setMinimumSize(smallestSize);
}

void ExportSheet::showEvent(QShowEvent* event) {
    if (!event->spontaneous())
        fitToOptions();
    QDialog::showEvent(event);
}

// As tall as all options are, on a screen that has the space.
void ExportSheet::fitToOptions() {
    resize(usualSize.boundedTo(availableSize(*this)));
    layout()->activate();
    const int options = m_options->layout()->totalHeightForWidth(m_optionsArea->viewport()->width());
    const int missing = std::max(0, options - m_optionsArea->viewport()->height());
    resize((size() + QSize(0, missing)).boundedTo(availableSize(*this)));
    placeOverWindow(*this);
}

QWidget* ExportSheet::makeSetup() {
    m_cancel->setObjectName(QStringLiteral("cancel"));
    m_cancel->setAutoDefault(false);
    m_start->setObjectName(QStringLiteral("startExport"));
    m_start->setDefault(true);
    auto* setup = new QWidget(this);
    auto* row = new QHBoxLayout(setup);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Space::s);
    row->addWidget(m_destination, 1);
    row->addSpacing(Space::s);
    row->addWidget(m_cancel);
    row->addWidget(m_start);
    return setup;
}

void ExportSheet::bind() {
    AppState& state = m_context.state;
    connect(m_options, &ExportOptionsPanel::presetChanged, this, &ExportSheet::updateExport);
    connect(m_options, &ExportOptionsPanel::presetChanged, this, &ExportSheet::requestStill);
    connect(m_options, &ExportOptionsPanel::presetChanged, this, &ExportSheet::offerEncoders);
    connect(m_options, &ExportOptionsPanel::fillChanged, this, &ExportSheet::updateExport);
    connect(m_options, &ExportOptionsPanel::fillChanged, this, &ExportSheet::requestStill);
    connect(m_still, &StillView::moved, m_options, &ExportOptionsPanel::setFillPosition);
    connect(m_options, &ExportOptionsPanel::formatChanged, this, &ExportSheet::updateExport);
    connect(m_options, &ExportOptionsPanel::formatChanged, this, &ExportSheet::offerEncoders);
    connect(m_options, &ExportOptionsPanel::qualityChanged, this, &ExportSheet::updateExport);
    connect(m_cancel, &QPushButton::clicked, this, &ExportSheet::reject);
    connect(m_start, &QPushButton::clicked, this, &ExportSheet::start);
    connect(m_stage, &ExportStage::cancelRequested, this, &ExportSheet::stop);
    connect(m_stage, &ExportStage::retryRequested, this, &ExportSheet::start);
    connect(m_stage, &ExportStage::optionsRequested, this, &ExportSheet::showOptions);
    connect(m_stage, &ExportStage::closeRequested, this, &ExportSheet::reject);
    connect(m_stage, &ExportStage::anotherRequested, this, [this] {
        m_destination->proposeNewFile();
        showOptions();
    });
    connect(m_stage, &ExportStage::resumeRequested, this, [this] { m_runner.queue().resume(); });
    connect(&m_runner, &ExportRunner::changed, this, &ExportSheet::showWords);
    connect(this, &QDialog::finished, this, [this] { m_runner.release(); });
    m_bindings.watch(state.language, [this] { showWords(); });
    m_bindings.watch(state.exportStatus, [this] { showStage(); });
    m_bindings.watch(state.videoURL, [this] { offerEncoders(); });
    auto kept = state.bindableKeptParts();
    m_bindings.watchAll([this] { updateExport(); }, state.trimStart, state.trimEnd, state.videoDuration,
                        kept);
    const auto watch = [&](auto&... stored) {
        m_bindings.watchAll([this] { requestStill(); }, stored..., state.currentTime, state.isLicensed);
    };
    std::apply(watch, documentProperties(state));
}

void ExportSheet::showWords() {
    setWindowTitle(m_context.text(L10nKey::exportVideoTitle));
    m_title->setText(m_context.text(L10nKey::exportVideoTitle));
    m_cancel->setText(m_context.text(L10nKey::cancel));
    m_start->setText(m_context.text(isQueueBusy() ? L10nKey::queueAdd : L10nKey::startExport));
    m_still->setAccessibleName(m_context.text(L10nKey::exportFrameName));
    m_moveHint->setText(m_context.text(L10nKey::exportMoveHint));
}

void ExportSheet::showStage() {
    const bool isChoosing = m_context.state.exportStatus.value().stage == Stage::idle;
    m_optionsArea->setVisible(isChoosing);
    m_summary->setVisible(isChoosing);
    m_setup->setVisible(isChoosing);
    m_still->setEnabled(isChoosing);
    m_moveHint->setVisible(isChoosing && m_options->settings().fill);
    m_stage->setVisible(!isChoosing);
    if (isChoosing)
        m_start->setFocus();
}

void ExportSheet::showOptions() {
    m_runner.release();
    updateExport();
}

void ExportSheet::updateExport() {
    m_destination->setFormat(m_options->settings().format);
    m_destination->estimate(job());
    m_moveHint->setVisible(m_options->settings().fill.has_value());
}

void ExportSheet::requestStill() {
    const auto requested = job();
    m_start->setEnabled(requested.has_value());
    if (!requested) {
        m_still->setFault(whyNothingStays(m_context).value_or(m_context.text(L10nKey::exportNotReady)));
        return;
    }
    m_still->request(*requested, nextKept(m_context.state.keptParts(), m_context.state.currentTime),
                     m_context.state.language);
}

void ExportSheet::offerEncoders() {
    if (const auto requested = job())
        m_options->offerEncodersFor(*requested);
}

std::optional<ExportJob> ExportSheet::job() const {
    auto job = exportJobFor(projectFrom(m_context.state));
    if (!job || m_context.state.keptParts().empty())
        return std::nullopt;
    job->overlay.isLicensed = m_context.state.isLicensed;
    job->settings = m_options->settings();
    if (const auto& document = m_context.state.currentProjectURL.value())
        job->projectPath = document->toLocalFile();
    job->outputPath = m_destination->path();
    job->ifExists = m_destination->ifExists();
    return job;
}

// How many pictures a second has is not known here.
QueuedExport ExportSheet::entry(const ExportJob& job) const {
    const AppState& state = m_context.state;
    const QSize size = targetSize(job.settings.preset).value_or(QSize(state.videoWidth, state.videoHeight));
    return {.name = displayName(job.overlay.config),
            .job = job,
            .work = TimeMap(state.keptParts()).length() * size.width() * size.height()};
}

bool ExportSheet::isQueueBusy() const {
    return !m_runner.isRunning() && m_runner.queue().status().left > 0;
}

void ExportSheet::start() {
    const auto wanted = job();
    if (!wanted || !m_destination->prepare(endingOfCaptions(*wanted)))
        return;
    m_destination->estimate(std::nullopt); // the export has the processors
    if (!isQueueBusy()) {
        m_runner.start(entry(*job()));
        return;
    }
    m_runner.add(entry(*job()));
    accept();
}

void ExportSheet::stop() {
    m_runner.cancel();
    m_stage->showStopping();
}

}
