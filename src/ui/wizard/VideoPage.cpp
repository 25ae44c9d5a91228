#include "ui/wizard/VideoPage.h"

#include "l10n/Format.h"
#include "ui/common/TimeCode.h"
#include "ui/common/VideoStill.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/DropTarget.h"
#include "ui/wizard/RecordingList.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMimeData>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace pointloom {

namespace {

QString sizeText(const media::Recording& recording, Language language) {
    qint64 bytes = 0;
    for (const QString& path : recording.files())
        bytes += QFileInfo(path).size();
    return localeOf(language).formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

}

VideoPage::VideoPage(const UiContext& context, WizardFlow& flow, QWidget* parent)
    : WizardPage(context, flow, L10nKey::importVideo, L10nKey::importVideoSubtitle, parent)
    , m_import(context, this)
    , m_states(new QStackedWidget(this))
    , m_target(new DropTarget(this)) {
    setAcceptDrops(true);
    m_card = makeVideoCard();
    m_states->addWidget(m_target);
    m_states->addWidget(m_card);
    m_absent = Controls::card(this);
    m_absentName = Controls::label(Controls::TextRole::strong, m_absent);
    m_absentPlace = Controls::label(Controls::TextRole::quiet, m_absent);
    auto* absent =
        Controls::layout<QVBoxLayout>(m_absent, {Space::l, Space::m, Space::l, Space::m}, Space::xs);
    for (QLabel* label : {m_absentName, m_absentPlace}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        absent->addWidget(label);
    }
    addUnscrolled(m_absent);
    addUnscrolled(m_states, 1);
    m_column->addSpacing(Space::s);

    connect(m_target, &QAbstractButton::clicked, this, &VideoPage::browse);
    connect(m_change, &QPushButton::clicked, this, &VideoPage::browse);
    connect(&m_import, &VideoImport::imported, this, [this] {
        showVideo();
        Q_EMIT completed();
    });
    connect(&m_import, &VideoImport::failed, this, &VideoPage::showError);
    connect(&m_flow, &WizardFlow::draftReplaced, this, [this] {
        m_import.cancel();
        showError({});
    });
    // The video of a document is there before its length and, last, its height are known.
    m_bindings.watchAll([this] { showVideo(); }, m_context.state.videoURL, m_context.state.videoHeight);
    m_bindings.watchAll([this] { showAbsentVideo(); }, m_context.state.absentVideo, m_context.state.videoURL,
                        m_context.state.language);
    m_bindings.watch(m_context.state.language, [this] { showTexts(); });
}

QWidget* VideoPage::makeVideoCard() {
    QFrame* card = Controls::card(this);
    m_poster = new VideoStill(card);
    m_name = Controls::label(Controls::TextRole::section, card);
    m_name->setTextFormat(Qt::PlainText);
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_facts = Controls::label(Controls::TextRole::quiet, card);
    m_error = Controls::label(Controls::TextRole::danger, card);
    m_error->setWordWrap(true);
    m_error->setTextFormat(Qt::PlainText);
    m_change = Controls::button(Controls::ButtonKind::normal, card);

    auto* words = new QVBoxLayout;
    words->setSpacing(Space::xs);
    words->addWidget(m_name);
    words->addWidget(m_facts);
    words->addWidget(m_error);
    auto* below = new QHBoxLayout;
    below->setSpacing(Space::l);
    below->addLayout(words, 1);
    below->addWidget(m_change, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout(card);
    column->setContentsMargins(Space::l, Space::l, Space::l, Space::l);
    column->setSpacing(Space::m);
    column->addWidget(m_poster, 1);
    column->addLayout(below);
    m_files = new RecordingList(m_context, card);
    connect(m_files, &RecordingList::chosen, &m_import, &VideoImport::take);
    column->addWidget(m_files);
    return card;
}

void VideoPage::browse() {
    const QString filter =
        m_context.text(L10nKey::videoFiles) + QStringLiteral(" (*.mp4 *.mov *.m4v *.MP4 *.MOV *.M4V)");
    const QStringList paths =
        m_context.dialogs.chooseFilesToOpen(window(), m_context.text(L10nKey::selectVideoFile), {filter});
    if (!paths.isEmpty())
        import(paths);
}

void VideoPage::import(const QStringList& paths) {
    showError({});
    m_import.start(paths);
    m_reading = QFileInfo(paths.front()).fileName();
    showTexts();
}

void VideoPage::showError(const QString& message) {
    m_reading.clear();
    m_target->setError(message);
    m_error->setText(message);
    m_error->setVisible(!message.isEmpty());
    showTexts();
}

void VideoPage::showVideo() {
    const auto& url = m_context.state.videoURL.value();
    m_states->setCurrentWidget(url ? m_card : m_target);
    if (url) {
        constexpr double posterPlace = 0.1; // of the length: the first frames often show nothing
        m_poster->showStill(*m_context.state.recording(), m_context.state.videoDuration * posterPlace);
    } else {
        m_poster->clear();
    }
    showError({});
    Q_EMIT obstacleChanged();
}

// Names the video that the match had before, while another one is asked for.
void VideoPage::showAbsentVideo() {
    const auto& path = m_context.state.absentVideo.value();
    m_absent->setVisible(path && !m_context.state.videoURL.value());
    if (!path)
        return;
    const QFileInfo file(*path);
    m_absentName->setText(format(m_context.text(L10nKey::videoAbsentTitle), file.fileName()));
    m_absentPlace->setText(format(m_context.text(L10nKey::videoAbsentMessage), file.path()));
}

void VideoPage::showTexts() {
    const QString reading =
        m_reading.isEmpty() ? QString() : format(m_context.text(L10nKey::videoReading), m_reading);
    m_target->setTexts(m_context.text(L10nKey::dropVideoHere), m_context.text(L10nKey::orClickToBrowse),
                       m_context.text(L10nKey::videoFormats));
    m_target->setBusy(reading);
    m_change->setText(m_context.text(L10nKey::changeVideo));
    showFacts();
    if (!reading.isEmpty())
        m_facts->setText(reading);
}

void VideoPage::showFacts() {
    const AppState& state = m_context.state;
    const auto& url = state.videoURL.value();
    if (!url)
        return;
    const media::Recording recording = *state.recording();
    const auto further = static_cast<qint64>(recording.files().size()) - 1;
    m_name->setText(further == 0
                        ? url->fileName()
                        : format(format(m_context.text(L10nKey::recordingFiles), further), url->fileName()));
    m_name->setToolTip(recording.first());
    m_facts->setText(QStringList{shortTime(state.videoDuration), sizeText(recording, state.language),
                                 QStringLiteral("%1 × %2").arg(state.videoWidth).arg(state.videoHeight)}
                         .join(QStringLiteral("   ·   ")));
}

QString VideoPage::obstacle() const {
    return m_context.state.videoURL.value() ? QString() : m_context.text(L10nKey::selectVideoFile);
}

bool VideoPage::confirm() {
    return true;
}

void VideoPage::takeFocus() {
    if (m_context.state.videoURL.value())
        Q_EMIT completed();
    else
        m_target->setFocus(Qt::OtherFocusReason);
}

void VideoPage::dragEnterEvent(QDragEnterEvent* event) {
    if (droppedFiles(event->mimeData()).isEmpty())
        return;
    event->acceptProposedAction();
    m_target->setHighlighted(true);
}

void VideoPage::dragLeaveEvent(QDragLeaveEvent*) {
    m_target->setHighlighted(false);
}

void VideoPage::dropEvent(QDropEvent* event) {
    m_target->setHighlighted(false);
    event->acceptProposedAction();
    import(droppedFiles(event->mimeData()));
}

}
