#include "ui/editor/TransportBar.h"

#include "ui/common/TimeCode.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Tokens.h"

#include <cmath>
#include <QActionGroup>
#include <QHBoxLayout>
#include <QStyle>

namespace pointloom {

namespace {

constexpr double speeds[] = {0.25, 0.5, 0.75, 1, 1.5, 2, 4};
constexpr int fullVolume = 100; // steps of the slider

// With the space beside it.
int widthOf(const QLabel* label) {
    return label->sizeHint().width() + Space::xs;
}

QString speedName(double speed) {
    return QStringLiteral("%1×").arg(speed);
}

}

TransportBar::TransportBar(const UiContext& context, EditorPlayback& playback, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_playback(playback)
    , m_start(makeButton(QStringLiteral("skip-start"), L10nKey::editorGoToStart, Command::goToStart))
    , m_back(makeButton(QStringLiteral("step-back"), L10nKey::editorStepBack, Command::frameBack))
    , m_play(Controls::iconButton(QStringLiteral("play"), this))
    , m_forward(makeButton(QStringLiteral("step-forward"), L10nKey::editorStepForward, Command::frameForward))
    , m_end(makeButton(QStringLiteral("skip-end"), L10nKey::editorGoToEnd, Command::goToEnd))
    , m_time(new TimeField(context, this))
    , m_total(Controls::label(Controls::TextRole::quiet, this))
    , m_quickPictures(Controls::label(Controls::TextRole::quiet, this))
    , m_playsOnlyKept(makeButton(QStringLiteral("play-kept"), L10nKey::editorPlayKept, Command::playKept))
    , m_speed(new QToolButton(this))
    , m_speedMenu(new QMenu(m_speed))
    , m_mute(Controls::iconButton(QStringLiteral("volume"), this))
    , m_volume(new QSlider(Qt::Horizontal, this))
    , m_preview(Controls::iconButton(QStringLiteral("image"), this)) {
    setProperty("background", QStringLiteral("surface"));
    setAttribute(Qt::WA_StyledBackground);
    m_back->setAutoRepeat(true);
    m_forward->setAutoRepeat(true);
    m_play->setProperty("kind", QStringLiteral("normal"));
    m_play->setIconSize(QSize(24, 24));
    m_time->setObjectName(QStringLiteral("timeCode"));
    makeSpeedMenu();
    m_playsOnlyKept->setObjectName(QStringLiteral("playsOnlyKept"));
    m_playsOnlyKept->setCheckable(true);
    m_volume->setRange(0, fullVolume);
    m_volume->setFixedWidth(60);
    m_volume->setFocusPolicy(Qt::TabFocus);

    auto* row = new QHBoxLayout(this);
    row->setSizeConstraint(QLayout::SetNoConstraint); // see minimumSizeHint
    row->setContentsMargins(Space::s, Space::s, Space::s, Space::s);
    row->setSpacing(Space::xs - 1);
    for (QToolButton* button : {m_start, m_back, m_play, m_forward, m_end})
        row->addWidget(button);
    row->addSpacing(Space::xs);
    row->addWidget(m_time);
    row->addWidget(m_total);
    row->addStretch(1);
    row->addWidget(m_quickPictures);
    row->addWidget(m_playsOnlyKept);
    row->addWidget(m_speed);
    row->addWidget(m_mute);
    row->addWidget(m_volume);
    row->addWidget(m_preview);

    connect(m_start, &QToolButton::clicked, this, [this] { m_playback.seek(0); });
    connect(m_back, &QToolButton::clicked, this, [this] { m_playback.stepFrames(-1); });
    connect(m_play, &QToolButton::clicked, &m_playback, &EditorPlayback::togglePlaying);
    connect(m_forward, &QToolButton::clicked, this, [this] { m_playback.stepFrames(1); });
    connect(m_end, &QToolButton::clicked, &m_playback, &EditorPlayback::goToEnd);
    connect(m_time, &TimeField::timeEntered, &m_playback,
            [this](double seconds) { m_playback.seek(seconds); });
    connect(m_playsOnlyKept, &QToolButton::toggled, &m_playback, &EditorPlayback::setPlaysOnlyKept);
    connect(&m_playback, &EditorPlayback::playsOnlyKeptChanged, this,
            [this] { m_playsOnlyKept->setChecked(m_playback.playsOnlyKept()); });
    connect(m_mute, &QToolButton::clicked, this, [this] { m_playback.setMuted(!m_playback.isMuted()); });
    connect(m_volume, &QSlider::valueChanged, this,
            [this](int value) { m_playback.setVolume(static_cast<double>(value) / fullVolume); });
    connect(m_preview, &QToolButton::clicked, this, &TransportBar::previewFrameRequested);
    connect(&m_playback, &EditorPlayback::soundChanged, this, &TransportBar::showSound);
    connect(&m_playback, &EditorPlayback::speedChanged, this, &TransportBar::showSpeed);

    connect(&m_playback.quickPictures(), &QuickPictures::progressChanged, this,
            &TransportBar::showQuickPictures);

    AppState& state = m_context.state;
    m_bindings.watchAll([this] { showPlaying(); }, state.isPlaying, state.language);
    m_bindings.watch(state.parts,
                     [this] { m_playsOnlyKept->setVisible(m_context.state.parts.value().isMade()); });
    m_bindings.watch(state.videoDuration, [this] {
        m_time->setEnabled(m_context.state.videoDuration > 0);
        showTotal();
    });
    m_bindings.watch(state.videoURL, [this] {
        const bool hasVideo = m_context.state.videoURL.value().has_value();
        for (QToolButton* button : {m_start, m_back, m_play, m_forward, m_end, m_preview})
            button->setEnabled(hasVideo);
    });
    m_bindings.watch(state.language, [this] {
        Controls::setName(m_speed, m_context.text(L10nKey::editorSpeed));
        Controls::setName(m_volume, m_context.text(L10nKey::editorVolume));
        Controls::setName(m_preview, m_context.text(L10nKey::previewFrame));
        showSound();
        showQuickPictures();
    });
    showSpeed();
}

QToolButton* TransportBar::makeButton(const QString& icon, L10nKey text, Command command) {
    QToolButton* button = Controls::iconButton(icon, this);
    m_bindings.watchAll(
        [this, button, text, command] {
            button->setAccessibleName(m_context.text(text));
            button->setToolTip(m_context.textWithKey(text, command));
        },
        m_context.state.language, m_context.keys.chosen());
    return button;
}

void TransportBar::makeSpeedMenu() {
    auto* group = new QActionGroup(m_speedMenu);
    for (const double speed : speeds) {
        QAction* action = m_speedMenu->addAction(speedName(speed));
        action->setCheckable(true);
        action->setData(speed);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, speed] { m_playback.setSpeed(speed); });
    }
    m_speed->setProperty("kind", QStringLiteral("plain"));
    m_speed->setFocusPolicy(Qt::TabFocus);
    m_speed->setPopupMode(QToolButton::InstantPopup);
    m_speed->setMenu(m_speedMenu);
    m_speed->setMinimumWidth(m_speed->fontMetrics().horizontalAdvance(speedName(0.25)) + Space::l);
}

void TransportBar::showPlaying() {
    const bool playing = m_context.state.isPlaying;
    const QString text = m_context.text(playing ? L10nKey::editorPause : L10nKey::editorPlay);
    m_play->setIcon(Icons::icon(playing ? QStringLiteral("pause") : QStringLiteral("play")));
    Controls::setName(m_play, text);
}

void TransportBar::typeTime() {
    m_time->setFocus(Qt::ShortcutFocusReason);
}

void TransportBar::showTotal() {
    m_total->setText(QStringLiteral("/ ") + timeCode(m_context.state.videoDuration));
}

void TransportBar::showSound() {
    const bool hasDevice = m_playback.hasSoundDevice();
    const bool silent = !hasDevice || m_playback.isMuted() || m_playback.volume() <= 0;
    const L10nKey action = m_playback.isMuted() ? L10nKey::editorUnmute : L10nKey::editorMute;
    const QString text = m_context.text(hasDevice ? action : L10nKey::editorNoSoundDevice);
    m_mute->setEnabled(hasDevice);
    m_volume->setEnabled(hasDevice);
    m_mute->setIcon(Icons::icon(silent ? QStringLiteral("volume-off") : QStringLiteral("volume")));
    Controls::setName(m_mute, text);
    const QSignalBlocker silence(m_volume);
    m_volume->setValue(
        m_playback.isMuted() ? 0 : static_cast<int>(std::lround(m_playback.volume() * fullVolume)));
}

void TransportBar::showSpeed() {
    m_speed->setText(speedName(m_playback.speed()));
    m_speed->setProperty("unusual", m_playback.speed() != 1);
    m_speed->style()->unpolish(m_speed);
    m_speed->style()->polish(m_speed);
    for (QAction* action : m_speedMenu->actions())
        action->setChecked(action->data().toDouble() == m_playback.speed());
}

void TransportBar::showQuickPictures() {
    if (const auto progress = m_playback.quickPictures().progress()) {
        const int share = static_cast<int>(*progress * 100);
        m_quickPictures->setText(format(m_context.text(L10nKey::editorQuickPictures), share));
        m_quickPictures->setToolTip(m_context.text(L10nKey::editorQuickPicturesDetail));
    }
    fit();
}

void TransportBar::resizeEvent(QResizeEvent*) {
    fit();
}

// In a narrow window the total gives its place to the progress of the quick preview, or is hidden.
void TransportBar::fit() {
    int free = width() - minimumSizeHint().width();
    const auto showIf = [&](QLabel* label, bool isWanted) {
        const bool fits = isWanted && free >= widthOf(label);
        free -= fits ? widthOf(label) : 0;
        label->setVisible(fits);
    };
    showIf(m_quickPictures, m_playback.quickPictures().progress().has_value());
    showIf(m_total, true);
}

QSize TransportBar::minimumSizeHint() const {
    QSize smallest = layout()->sizeHint();
    for (const QLabel* label : {m_total, m_quickPictures})
        smallest.rwidth() -= label->isHidden() ? 0 : widthOf(label);
    return smallest;
}

}
