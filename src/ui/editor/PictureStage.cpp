#include "ui/editor/PictureStage.h"

#include "ui/common/FaultText.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr QSize assumedPicture{16, 9};

}

PictureStage::PictureStage(const UiContext& context, EditorPlayback& playback, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_playback(playback)
    , m_emptyState(makeEmptyState())
    , m_overlay(new ScoreboardOverlayView(context, this))
    , m_messages(new MessageBar(context, this)) {
    setProperty("background", QStringLiteral("window"));
    setAttribute(Qt::WA_StyledBackground);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&m_playback, &EditorPlayback::playerStarted, this, &PictureStage::showPlayer);
    connect(&m_playback, &EditorPlayback::opening, m_messages, &QWidget::hide);
    connect(&m_playback, &EditorPlayback::opening, this, &PictureStage::showWhatThereIs);
    connect(&m_playback, &EditorPlayback::loaded, this, &PictureStage::place);
    connect(&m_playback, &EditorPlayback::failed, this, &PictureStage::showFailure);
    connect(&m_playback, &EditorPlayback::unavailable, this, &PictureStage::showUnavailable);
    connect(m_messages, &MessageBar::firstActionChosen, this, &PictureStage::importRequested);
    connect(m_messages, &MessageBar::secondActionChosen, &m_playback, &EditorPlayback::reload);
    AppState& state = m_context.state;
    m_bindings.watch(state.videoURL, [this] { showWhatThereIs(); });
    m_bindings.watchAll([this] { place(); }, state.videoWidth, state.videoHeight);
}

PictureStage::~PictureStage() = default;

QWidget* PictureStage::makeEmptyState() {
    auto* empty = new QWidget(this);
    auto* picture = new QLabel(empty);
    auto* title = Controls::label(Controls::TextRole::section, empty);
    auto* hint = Controls::label(Controls::TextRole::quiet, empty);
    auto* button = Controls::button(Controls::ButtonKind::primary, empty);
    hint->setWordWrap(true);
    hint->setAlignment(Qt::AlignCenter);
    auto* column = new QVBoxLayout(empty);
    column->setSpacing(Space::s);
    column->addStretch();
    column->addWidget(picture, 0, Qt::AlignHCenter);
    column->addWidget(title, 0, Qt::AlignHCenter);
    column->addWidget(hint);
    column->addSpacing(Space::s);
    column->addWidget(button, 0, Qt::AlignHCenter);
    column->addStretch();

    const auto tint = [this, picture] {
        constexpr int side = 44;
        picture->setPixmap(
            Icons::pixmap(QStringLiteral("film"), side, tokens().quietText, devicePixelRatioF()));
    };
    tint();
    connect(&Theme::shared(), &Theme::changed, picture, tint);
    connect(button, &QPushButton::clicked, this, &PictureStage::importRequested);
    m_bindings.watch(m_context.state.language, [this, title, hint, button] {
        title->setText(m_context.text(L10nKey::editorNoVideoYet));
        hint->setText(m_context.text(L10nKey::editorNoVideoHint));
        button->setText(m_context.text(L10nKey::importVideo));
    });
    return empty;
}

void PictureStage::showPlayer(playback::Player& player) {
    try {
        m_view =
            std::make_unique<playback::PlayerView>(player, playback::PlayerView::Rendering::automatic, this);
    } catch (const playback::PlaybackError& error) {
        m_playback.giveUp(QString::fromUtf8(error.what()));
        return;
    }
    connect(m_view.get(), &playback::PlayerView::videoRectChanged, this, &PictureStage::place);
    // Queued: the view is deleted.
    connect(m_view.get(), &playback::PlayerView::unavailable, &m_playback, &EditorPlayback::giveUp,
            Qt::QueuedConnection);
    showWhatThereIs();
    place();
}

// A view whose file is gone would go on showing its last frame.
void PictureStage::showFailure(const QString& message, media::MediaFault fault) {
    hostOverlay(this);
    if (m_view)
        m_view->hide();
    const auto& url = m_context.state.videoURL.value();
    const FaultText words =
        faultText(fault, url ? url->fileName() : QString(), message, m_context.state.language);
    m_messages->showMessage(words.sentence, words.detail, m_context.text(L10nKey::editorImportAgain),
                            m_context.text(L10nKey::retry));
    place();
}

void PictureStage::showUnavailable(const QString& reason) {
    hostOverlay(this);
    m_view.reset();
    showWhatThereIs();
    m_messages->raise();
    m_messages->showMessage(m_context.text(L10nKey::editorNoPicture), reason);
    place();
}

void PictureStage::showWhatThereIs() {
    const bool hasVideo = m_context.state.videoURL.value().has_value();
    m_emptyState->setVisible(!hasVideo);
    m_overlay->setVisible(hasVideo);
    if (m_view) {
        m_view->setVisible(hasVideo);
        hostOverlay(m_view.get());
    }
    m_messages->raise();
}

// Only children of the view lie over the picture.
void PictureStage::hostOverlay(QWidget* host) {
    if (m_overlay->parentWidget() == host)
        return;
    m_overlay->setParent(host); // which hides it
    m_overlay->setVisible(m_context.state.videoURL.value().has_value());
}

// A session that was reset has forgotten the size.
void PictureStage::showEvent(QShowEvent*) {
    m_context.state.previewAreaSize = size();
}

void PictureStage::resizeEvent(QResizeEvent*) {
    m_context.state.previewAreaSize = size();
    place();
}

void PictureStage::place() {
    m_emptyState->setGeometry(rect());
    if (m_view)
        m_view->setGeometry(rect());
    m_overlay->setGeometry(rect());
    m_overlay->raise();
    m_overlay->setVideoRect(videoRect());
    const int width = std::min(this->width() - 2 * Space::m, 640);
    const int height = m_messages->layout()->hasHeightForWidth() ? m_messages->layout()->heightForWidth(width)
                                                                 : m_messages->sizeHint().height();
    m_messages->setGeometry((this->width() - width) / 2, Space::m, width, height);
    m_messages->raise();
}

// The area of the player's picture, or the one it would have while it cannot be shown.
QRectF PictureStage::videoRect() const {
    const AppState& state = m_context.state;
    if (m_view && m_playback.isLoaded())
        return m_view->videoRect();
    const QSize known(state.videoWidth, state.videoHeight);
    return playback::fitPicture(known.isEmpty() ? assumedPicture : known, rect());
}

}
