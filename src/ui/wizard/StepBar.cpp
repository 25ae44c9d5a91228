#include "ui/wizard/StepBar.h"

#include "files/FileError.h"
#include "ui/common/Preferences.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/StepButton.h"

#include <QActionGroup>
#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

namespace pointloom {

namespace {

// In every language at once, so that whoever cannot read the others finds it.
const QString languageMenuText = QStringLiteral("Language / Langue / Idioma");

}

StepBar::StepBar(const UiContext& context, WizardFlow& flow, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_flow(flow) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Space::l, Space::s, Space::l, Space::s);
    row->setSpacing(Space::xs);
    for (const Screen screen : wizardScreens) {
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
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
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
                // It holds for this session.
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
    const QString texts[wizardScreens.size()] = {
        m_context.text(L10nKey::stepSport), m_context.text(L10nKey::templateLabel),
        m_context.text(L10nKey::stepMatch), m_context.text(L10nKey::stepVideo)};
    for (std::size_t i = 0; i < m_steps.size(); ++i)
        m_steps[i]->setText(texts[i]);
    showProgress();
}

void StepBar::showProgress() {
    for (const Screen screen : wizardScreens) {
        auto mark = m_flow.isDone(screen) ? StepButton::Mark::done : StepButton::Mark::upcoming;
        if (m_context.state.step == screen)
            mark = StepButton::Mark::current;
        m_steps[static_cast<std::size_t>(screen)]->setMark(mark, m_flow.isReachable(screen));
    }
}

}
