#include "ui/wizard/WizardView.h"

#include "l10n/Format.h"
#include "ui/style/Announcement.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"
#include "ui/wizard/MatchPage.h"
#include "ui/wizard/SportPage.h"
#include "ui/wizard/StepBar.h"
#include "ui/wizard/TemplatePage.h"
#include "ui/wizard/VideoPage.h"

#include <QHBoxLayout>
#include <QShortcut>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>

namespace pointloom {

namespace {

// Names the video that was chosen before its screen is reached.
class VideoNote final : public QWidget {
public:
    VideoNote(const UiContext& context, QWidget* parent)
        : QWidget(parent)
        , m_context(context)
        , m_icon(new QLabel(this))
        , m_words(new ElidedLabel(this)) {
        Controls::setRole(m_words, Controls::TextRole::quiet);
        m_words->setTextFormat(Qt::PlainText);
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(Space::s);
        row->addWidget(m_icon);
        row->addWidget(m_words, 1);
        tintIcon();
        connect(&Theme::shared(), &Theme::changed, this, &VideoNote::tintIcon);
        AppState& state = m_context.state;
        m_bindings.watchAll([this] { showVideo(); }, state.videoURL, state.step, state.language);
    }

private:
    void showVideo() {
        const auto& url = m_context.state.videoURL.value();
        const bool isShown = url && m_context.state.step < Screen::video;
        m_words->setFullText(isShown ? format(m_context.text(L10nKey::videoChosen), url->fileName())
                                     : QString());
        const bool appears = isShown && isHidden();
        setVisible(isShown);
        if (appears)
            announce(*this, m_words->accessibleName());
    }

    void tintIcon() {
        constexpr int side = 20;
        m_icon->setPixmap(Icons::pixmap(QStringLiteral("film"), side, tokens().accent, devicePixelRatioF()));
    }

    UiContext m_context;
    QLabel* m_icon;
    ElidedLabel* m_words;
    Bindings m_bindings;
};

// One button of a page is filled: that which is pressed first.
void setFilled(QPushButton& button, bool isFilled) {
    const QString kind = isFilled ? QStringLiteral("primary") : QStringLiteral("normal");
    if (button.property("kind") == kind)
        return;
    button.setProperty("kind", kind);
    button.style()->unpolish(&button);
    button.style()->polish(&button);
}

Screen neighbour(Screen screen, int distance) {
    return static_cast<Screen>(static_cast<int>(screen) + distance);
}

}

WizardView::WizardView(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_flow(context)
    , m_bar(new StepBar(context, m_flow, this))
    , m_stack(new QStackedWidget(this)) {
    setProperty("background", QStringLiteral("window"));
    setAttribute(Qt::WA_StyledBackground);
    addPage(m_sport = new SportPage(context, m_flow, m_stack)); // in the order of `wizardScreens`
    addPage(new TemplatePage(context, m_flow, m_stack));
    addPage(m_match = new MatchPage(context, m_flow, m_stack));
    addPage(new VideoPage(context, m_flow, m_stack));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_bar);
    column->addWidget(Controls::separator(Qt::Horizontal, this));
    column->addWidget(m_stack, 1);
    column->addWidget(Controls::separator(Qt::Horizontal, this));
    column->addWidget(makeFooter());

    connect(m_bar, &StepBar::stepPicked, this, &WizardView::goTo);
    connect(m_sport, &SportPage::goOnRequested, this, &WizardView::goOnRequested);
    connect(m_sport, &SportPage::newMatchRequested, this, &WizardView::newMatchRequested);
    connect(m_sport, &SportPage::sampleRequested, this, &WizardView::sampleRequested);
    auto* backKey = new QShortcut(QKeySequence::Back, this);
    connect(backKey, &QShortcut::activated, this, &WizardView::goBack);
    AppState& state = m_context.state;
    m_bindings.watch(state.step, [this] { showStep(); });
    m_bindings.watch(state.language, [this] { showTexts(); });
    m_bindings.watchAll([this] { showProgress(); }, state.selectedTemplate, state.matchConfig,
                        state.videoURL);
}

void WizardView::addPage(WizardPage* page) {
    m_stack->addWidget(page);
    connect(page, &WizardPage::obstacleChanged, this, &WizardView::showProgress);
    connect(page, &WizardPage::continueRequested, this, &WizardView::goOn);
    connect(page, &WizardPage::completed, this, [this, page] {
        if (page == currentPage() && m_continue->isEnabled())
            m_continue->setFocus(Qt::OtherFocusReason);
    });
}

QWidget* WizardView::makeFooter() {
    auto* footer = new QWidget(this);
    m_back = Controls::button(Controls::ButtonKind::normal, footer);
    m_hint = Controls::label(Controls::TextRole::quiet, footer);
    m_hint->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_hint->setWordWrap(true);
    m_continue = Controls::button(Controls::ButtonKind::primary, footer);
    auto* row = new QHBoxLayout(footer);
    row->setContentsMargins(Space::xl, Space::m, Space::xl, Space::m);
    row->setSpacing(Space::l);
    row->addWidget(m_back);
    row->addWidget(new VideoNote(m_context, footer), 1);
    row->addWidget(m_hint, 1);
    row->addWidget(m_continue);
    connect(m_back, &QPushButton::clicked, this, &WizardView::goBack);
    connect(m_continue, &QPushButton::clicked, this, &WizardView::goOn);
    return footer;
}

WizardPage* WizardView::currentPage() const {
    return static_cast<WizardPage*>(m_stack->currentWidget());
}

void WizardView::showStep() {
    const Screen screen = m_context.state.step;
    if (screen == Screen::editor)
        return;
    m_stack->setCurrentIndex(static_cast<int>(screen));
    showTexts();
    if (isVisible())
        currentPage()->takeFocus();
}

void WizardView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    currentPage()->takeFocus();
}

void WizardView::showTexts() {
    m_back->setText(m_context.text(L10nKey::back));
    m_back->setVisible(m_stack->currentIndex() > 0);
    showProgress();
}

void WizardView::showProgress() {
    if (!m_continue)
        return;
    const QString obstacle = currentPage()->obstacle();
    const bool isLast = m_context.state.step == Screen::video || m_flow.isReachable(Screen::editor);
    m_continue->setText(m_context.text(isLast ? L10nKey::openEditor : L10nKey::continueBtn));
    setFilled(*m_continue, currentPage() != m_sport || !m_sport->offersMatch());
    m_hint->setText(obstacle);
    m_continue->setEnabled(obstacle.isEmpty());
    m_continue->setAccessibleDescription(obstacle);
    m_bar->showProgress();
}

// On the way back a page may be left as it is, but one that was done is confirmed: the editor may be next.
bool WizardView::mayLeaveFor(Screen screen) {
    const Screen current = m_context.state.step;
    const bool isForward = screen > current;
    if (!currentPage()->obstacle().isEmpty())
        return !isForward;
    return (!isForward && !m_flow.isDone(current)) || currentPage()->confirm();
}

void WizardView::goTo(Screen screen) {
    const Screen current = m_context.state.step;
    if (screen == current || !mayLeaveFor(screen))
        return;
    if (screen != neighbour(current, 1) && !m_flow.isReachable(screen))
        return;
    if (screen == Screen::editor)
        m_flow.openEditor();
    else
        m_context.state.step = screen;
}

// With nothing left to do the editor is next, whichever page is shown.
void WizardView::goOn() {
    goTo(m_flow.isReachable(Screen::editor) ? Screen::editor : neighbour(m_context.state.step, 1));
}

void WizardView::goBack() {
    if (m_context.state.step > Screen::sport)
        goTo(neighbour(m_context.state.step, -1));
}

void WizardView::takeFocus() {
    currentPage()->takeFocus();
}

void WizardView::offerMatch(const std::optional<LastMatch>& match) {
    m_sport->offerMatch(match);
    showProgress();
}

void WizardView::editName(Side side) {
    m_match->editName(side);
}

}
