#include "ui/wizard/StepBar.h"

#include "files/FileDescriptor.h"
#include "ui/common/Preferences.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QActionGroup>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QToolButton>

namespace pointloom {

namespace {

constexpr int circleSize = 24;

constexpr std::array steps{Screen::sport, Screen::scoreboard, Screen::match, Screen::video, Screen::editor};

// Shown in every language.
const QString languageMenuText = QStringLiteral("Language / Langue / Idioma");

}

StepButton::StepButton(int number, QWidget* parent)
    : QAbstractButton(parent)
    , m_number(number) {
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void StepButton::setMark(Mark mark, bool isReachable) {
    m_mark = mark;
    const bool canBePressed = isReachable && mark != Mark::current;
    setEnabled(isReachable || mark == Mark::current);
    setFocusPolicy(canBePressed ? Qt::TabFocus : Qt::NoFocus);
    setCursor(canBePressed ? Qt::PointingHandCursor : Qt::ArrowCursor);
    updateGeometry();
    update();
}

// The same width for every mark, so that the bar does not move from step to step.
QSize StepButton::sizeHint() const {
    const QFontMetrics metrics(strongFont(font()));
    return {circleSize + Space::s + metrics.horizontalAdvance(text()) + 2 * Space::s,
            std::max(circleSize, metrics.height()) + 2 * Space::s};
}

void StepButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void StepButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ColorTokens& colors = tokens();
    const bool canBePressed = isEnabled() && m_mark != Mark::current;
    if (canBePressed && underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.raised);
        painter.drawRoundedRect(rect(), Radius::field, Radius::field);
    }
    if (hasFocus()) {
        painter.setPen(QPen(colors.accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius::field, Radius::field);
    }

    const QRectF circle(Space::s, (height() - circleSize) / 2.0, circleSize, circleSize);
    const bool isCurrent = m_mark == Mark::current;
    painter.setPen(isCurrent ? QPen(Qt::NoPen)
                             : QPen(m_mark == Mark::done ? colors.accent : colors.line, 1.5));
    painter.setBrush(isCurrent ? QBrush(colors.accent) : QBrush(Qt::NoBrush));
    painter.drawEllipse(isCurrent ? circle : circle.adjusted(0.75, 0.75, -0.75, -0.75));
    painter.setFont(strongFont(font()));
    if (m_mark == Mark::done) {
        constexpr int iconSize = 14;
        painter.drawPixmap(
            circle.center() - QPointF(iconSize, iconSize) / 2,
            Icons::pixmap(QStringLiteral("check"), iconSize, colors.accent, devicePixelRatioF()));
    } else {
        painter.setPen(isCurrent ? colors.onAccent : colors.quietText);
        painter.drawText(circle, Qt::AlignCenter, QString::number(m_number));
    }
    painter.setPen(m_mark == Mark::upcoming && !canBePressed ? colors.quietText : colors.text);
    painter.drawText(QRectF(circle.right() + Space::s, 0, width(), height()),
                     Qt::AlignLeft | Qt::AlignVCenter, text());
}

StepBar::StepBar(const UiContext& context, WizardFlow& flow, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_flow(flow) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Space::l, Space::s, Space::l, Space::s);
    row->setSpacing(Space::xs);
    for (const Screen screen : steps) {
        if (!m_steps.empty()) {
            QFrame* connection = Controls::separator(Qt::Horizontal, this);
            connection->setMinimumWidth(Space::s);
            connection->setMaximumWidth(Space::xxl);
            row->addWidget(connection, 1, Qt::AlignVCenter);
        }
        auto* button = new StepButton(static_cast<int>(m_steps.size()) + 1, this);
        connect(button, &QAbstractButton::clicked, this, [this, screen] { Q_EMIT stepPicked(screen); });
        m_steps.push_back(button);
        row->addWidget(button);
    }
    m_languageMenu = makeLanguageMenu();
    row->addStretch(2);
    row->addWidget(m_languageMenu);
    m_bindings.watch(m_context.state.language, [this] { showTexts(); });
}

QToolButton* StepBar::makeLanguageMenu() {
    QToolButton* button = Controls::iconButton(QStringLiteral("globe"), this);
    button->setText(languageMenuText);
    button->setAccessibleName(languageMenuText);
    button->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(button);
    auto* group = new QActionGroup(menu);
    for (const auto& [language, name] : RawValues<Language>::table) {
        QAction* action = menu->addAction(flag(language) + QStringLiteral("  ") + displayName(language));
        action->setCheckable(true);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, chosen = language] {
            try {
                Preferences::chooseLanguage(m_context, chosen);
            } catch (const FileError&) {
                // the choice applies to this session
            }
        });
        m_bindings.watch(m_context.state.language, [this, action, own = language] {
            action->setChecked(m_context.state.language == own);
        });
    }
    button->setMenu(menu);
    return button;
}

void StepBar::showTexts() {
    const QString texts[steps.size()] = {
        m_context.text(L10nKey::stepSport), m_context.text(L10nKey::templateLabel),
        m_context.text(L10nKey::stepMatch), m_context.text(L10nKey::stepVideo),
        m_context.text(L10nKey::stepEditor)};
    for (std::size_t i = 0; i < m_steps.size(); ++i)
        m_steps[i]->setText(texts[i]);
    showProgress();
    fitLanguageMenu();
}

// Beside long names of steps a narrow window has no place for its text.
void StepBar::fitLanguageMenu() {
    m_languageMenu->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    if (layout()->sizeHint().width() > width())
        m_languageMenu->setToolButtonStyle(Qt::ToolButtonIconOnly);
}

void StepBar::resizeEvent(QResizeEvent*) {
    fitLanguageMenu();
}

void StepBar::showProgress() {
    for (const Screen screen : steps) {
        auto mark = m_flow.isDone(screen) ? StepButton::Mark::done : StepButton::Mark::upcoming;
        if (m_context.state.step == screen)
            mark = StepButton::Mark::current;
        m_steps[static_cast<std::size_t>(screen)]->setMark(mark, m_flow.isReachable(screen));
    }
}

}
