#include "ui/export/FramePreview.h"

#include "persistence/DocumentFile.h"
#include "persistence/ProjectSession.h"
#include "ui/common/Dialogs.h"
#include "ui/export/ExportWords.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QFileInfo>
#include <QHBoxLayout>

namespace pointloom {

namespace {

constexpr QSize usualSize(880, 600);
constexpr QSize smallestSize(520, 380);

// Returns why it cannot be written.
QString faultOfWriting(const QImage& still, const QString& path, const std::vector<InputFile>& inputs) {
    try {
        requireNoInput(path, inputs);
        writePng(still, path);
        return {};
    } catch (const DocumentError& error) {
        return QString::fromUtf8(error.what());
    }
}

}

FramePreview::FramePreview(const UiContext& context, QWidget* parent)
    : QDialog(parent)
    , m_context(context)
    , m_title(Controls::label(Controls::TextRole::title, this))
    , m_facts(Controls::label(Controls::TextRole::quiet, this))
    , m_area(new QScrollArea(this))
    , m_still(new StillView(this))
    , m_retry(Controls::button(Controls::ButtonKind::normal, this))
    , m_actualSize(Controls::button(Controls::ButtonKind::normal, this))
    , m_save(Controls::button(Controls::ButtonKind::normal, this))
    , m_close(Controls::button(Controls::ButtonKind::primary, this)) {
    build();
    bind();
    m_close->setFocus();
}

void FramePreview::build() {
    m_still->setObjectName(QStringLiteral("still"));
    m_retry->setObjectName(QStringLiteral("retry"));
    m_actualSize->setObjectName(QStringLiteral("actualSize"));
    m_save->setObjectName(QStringLiteral("savePicture"));
    m_close->setObjectName(QStringLiteral("close"));
    m_actualSize->setCheckable(true);
    m_actualSize->setAutoDefault(false);
    m_save->setAutoDefault(false);
    m_close->setDefault(true);
    m_area->setWidget(m_still);
    m_area->setWidgetResizable(true);
    m_area->setAlignment(Qt::AlignCenter);
    m_area->setFocusPolicy(Qt::StrongFocus); // arrow keys move a large picture
    m_retry->hide();

    auto* heading = new QHBoxLayout;
    heading->addWidget(m_title);
    heading->addStretch();
    heading->addWidget(m_facts, 0, Qt::AlignBottom);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Space::s);
    buttons->addWidget(m_actualSize);
    buttons->addStretch();
    buttons->addWidget(m_retry);
    buttons->addWidget(m_save);
    buttons->addWidget(m_close);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(Space::xl, Space::l, Space::xl, Space::l);
    whole->setSpacing(Space::m);
    whole->addLayout(heading);
    whole->addWidget(m_area, 1);
    whole->addLayout(buttons);
    setMinimumSize(smallestSize);
    resize(usualSize.boundedTo(availableSize(*this)));
    placeOverWindow(*this);
}

void FramePreview::bind() {
    AppState& state = m_context.state;
    connect(m_actualSize, &QPushButton::toggled, this, &FramePreview::showZoom);
    connect(m_save, &QPushButton::clicked, this, &FramePreview::save);
    connect(m_close, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_retry, &QPushButton::clicked, this, &FramePreview::requestStill);
    connect(m_still, &StillView::rendered, this, &FramePreview::showStill);
    connect(m_still, &StillView::failed, this, &FramePreview::offerRetry);
    m_bindings.watch(state.language, [this] { showWords(); });
    m_bindings.watchAll([this] { requestStill(); }, state.currentTime, state.videoURL, state.isLicensed);
}

void FramePreview::showWords() {
    setWindowTitle(m_context.text(L10nKey::framePreview));
    m_title->setText(m_context.text(L10nKey::framePreview));
    m_actualSize->setText(QStringLiteral("100 %"));
    m_actualSize->setToolTip(m_context.text(L10nKey::exportActualSize));
    m_actualSize->setAccessibleName(m_context.text(L10nKey::exportActualSize));
    m_save->setText(m_context.text(L10nKey::exportSavePicture));
    m_close->setText(m_context.text(L10nKey::exportClose));
    m_retry->setText(m_context.text(L10nKey::retry));
    m_still->setAccessibleName(m_context.text(L10nKey::exportFrameName));
    m_area->setAccessibleName(m_still->accessibleName());
}

void FramePreview::showZoom(bool isActualSize) {
    m_still->setActualSize(isActualSize);
    m_still->setMinimumSize(isActualSize ? m_still->sizeHint() : QSize(0, 0));
}

void FramePreview::requestStill() {
    m_save->setEnabled(false);
    m_retry->hide();
    m_facts->setText(place());
    auto job = exportJobFor(projectFrom(m_context.state));
    if (!job) {
        m_still->setFault(m_context.text(L10nKey::exportNotReady));
        offerRetry();
        return;
    }
    job->overlay.isLicensed = m_context.state.isLicensed;
    m_still->setFault({});
    m_still->request(*job, m_context.state.currentTime, m_context.state.language);
}

// Where the playhead is, and whether the export shows it.
QString FramePreview::place() const {
    const AppState& state = m_context.state;
    const QString place = ExportWords::place(state.currentTime);
    const TimeSpan* part = partFrom(state.keptParts(), state.currentTime);
    return part && part->start <= state.currentTime
               ? place
               : place + QStringLiteral(" · ") + m_context.text(L10nKey::exportNotInVideo);
}

void FramePreview::showStill() {
    const QImage& still = m_still->still();
    m_facts->setText(QStringLiteral("%1 · %2 × %3").arg(place()).arg(still.width()).arg(still.height()));
    m_save->setEnabled(true);
    showZoom(m_actualSize->isChecked());
}

void FramePreview::offerRetry() {
    m_retry->setVisible(m_context.state.videoURL.value().has_value());
}

void FramePreview::save() {
    const auto& video = m_context.state.videoURL.value();
    const QString name =
        QFileInfo(video ? video->toLocalFile() : QString()).completeBaseName() + QLatin1Char('_') +
        ExportWords::place(m_context.state.currentTime).replace(QLatin1Char(':'), QLatin1Char('-')) +
        QStringLiteral(".png");
    const auto chosen = chooseFileToSave(m_context, this, m_context.text(L10nKey::exportSavePicture), name,
                                         QStringLiteral("PNG (*.png)"), QStringLiteral(".png"));
    if (!chosen)
        return;
    m_save->setEnabled(false);
    const auto write = [still = m_still->still(), path = *chosen, inputs = inputFiles(m_context.state)] {
        return faultOfWriting(still, path, inputs);
    };
    m_saving.start(write, [this](const QString& fault) {
        m_save->setEnabled(true);
        if (!fault.isEmpty())
            m_context.dialogs.alert(this, m_context.text(L10nKey::framePreview),
                                    format(m_context.text(L10nKey::exportCouldNotSavePicture), fault));
    });
}

}
