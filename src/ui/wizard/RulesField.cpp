#include "ui/wizard/RulesField.h"

#include "rules/MatchCount.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QComboBox>
#include <QVBoxLayout>

namespace pointloom {

namespace {

using Word = std::string_view;

struct ChoiceText {
    Word choice;
    L10nKey title;
    L10nKey usual; // of the sport's usual rules, where these have no word
};

constexpr ChoiceText choiceTexts[] = {
    {"sets", L10nKey::rulesChoiceSets, L10nKey::rulesSets6},
    {"game", L10nKey::rulesChoiceGame, L10nKey::rulesAdvantage},
    {"deciding", L10nKey::rulesChoiceDeciding, L10nKey::rulesTieBreak7},
    {"court", L10nKey::rulesChoiceCourt, L10nKey::rulesIndoor},
    {"players", L10nKey::matchFormat, L10nKey::singles},
    {"points", L10nKey::rulesChoicePoints, L10nKey::rulesChoicePoints},
    {"scoring", L10nKey::rulesChoiceScoring, L10nKey::rulesOnServe},
};

constexpr std::pair<Word, L10nKey> wordTexts[] = {
    {"short-sets", L10nKey::rulesShortSets},
    {"pro-set-8", L10nKey::rulesProSet8},
    {"pro-set-9", L10nKey::rulesProSet9},
    {"fast4", L10nKey::rulesFast4},
    {"no-ad", L10nKey::rulesNoAd},
    {"deciding=tiebreak-7", L10nKey::rulesTieBreak7},
    {"deciding=tiebreak-10", L10nKey::rulesTieBreak10},
    {"deciding=tiebreak-at-12", L10nKey::rulesTieBreakAt12},
    {"deciding=advantage", L10nKey::rulesNoTieBreak},
    {"deciding=match-tiebreak-10", L10nKey::rulesMatchTieBreak},
    {"beach", L10nKey::rulesBeach},
    {"hand-out", L10nKey::rulesHandOut},
    {"doubles", L10nKey::doubles},
    {"rally", L10nKey::rulesRally},
    {"rally-win-on-serve", L10nKey::rulesRallyOnServe},
};

constexpr Word usualDeciding = "deciding=tiebreak-7";

QString wordText(const UiContext& context, SportID sport, Word choice, Word word) {
    if (choice == "points") {
        const auto points =
            formatOf(sport, word.empty() ? std::vector<std::string>() : std::vector{std::string(word)});
        return QString::number(points.set.game.points.target);
    }
    if (!word.empty())
        return context.text(std::ranges::find(wordTexts, word, &std::pair<Word, L10nKey>::first)->second);
    if (sport == SportID::squash)
        return context.text(L10nKey::rulesRally);
    return context.text(std::ranges::find(choiceTexts, choice, &ChoiceText::choice)->usual);
}

bool contains(const std::vector<std::string>& rules, Word word) {
    return std::ranges::find(rules, word) != rules.end();
}

}

RulesField::RulesField(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_row(new QHBoxLayout(this)) {
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(Space::m);
    m_row->addStretch(1);
    m_counting = addList(m_countingBox);
    m_counting->setObjectName(QStringLiteral("rulesCounting"));
    m_counting->addItems({QString(), QString()});
    m_bindings.watch(m_context.state.language, [this] { showTexts(); });
}

// A list below its title, before the stretch at the end.
QComboBox* RulesField::addList(QWidget*& box) {
    box = new QWidget(this);
    auto* column = Controls::layout<QVBoxLayout>(box, {0, 0, 0, 0}, Space::xs);
    auto* list = new QComboBox(box);
    list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    list->setMinimumWidth(100); // elided in a narrow window, points
    list->setFocusPolicy(Qt::StrongFocus);
    constexpr int narrowest = 120; // points; all lists fit into a narrow window
    list->setMinimumWidth(narrowest);
    column->addWidget(Controls::label(Controls::TextRole::quiet, box));
    column->addWidget(list);
    m_row->insertWidget(m_row->count() - 1, box);
    connect(list, &QComboBox::activated, this, [this] { readLists(); });
    return list;
}

void RulesField::setRules(const MatchConfig& match, const std::vector<std::string>& rules) {
    m_match = match;
    m_rules = rules;
    offerChoices(match.sport);
    showLists();
}

void RulesField::offerChoices(SportID sport) {
    if (m_offered == sport)
        return;
    m_offered = sport;
    for (const Choice& choice : m_choices)
        delete choice.box;
    m_choices.clear();
    for (const auto& [name, word, meaning] : formatWords(sport)) {
        if (m_choices.empty() || m_choices.back().name != name) {
            Choice choice{name, {}, nullptr, nullptr};
            choice.list = addList(choice.box);
            choice.list->setObjectName(QStringLiteral("rules-") +
                                       QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
            if (word != usualDeciding)
                choice.words.emplace_back();
            m_choices.push_back(choice);
        }
        m_choices.back().words.push_back(word);
    }
    for (const Choice& choice : m_choices) {
        for (std::size_t i = 0; i < choice.words.size(); ++i)
            choice.list->addItem(QString());
    }
    showTexts();
}

void RulesField::readLists() {
    m_rules.clear();
    if (m_counting->currentIndex() == 1) {
        m_rules.emplace_back(byHand);
    } else {
        for (const Choice& choice : m_choices) {
            if (const int index = choice.list->currentIndex(); index > 0)
                m_rules.emplace_back(choice.words[static_cast<std::size_t>(index)]);
        }
    }
    showLists();
    Q_EMIT edited();
}

void RulesField::showLists() {
    const bool isByHand = contains(m_rules, byHand);
    m_counting->setCurrentIndex(isByHand ? 1 : 0);
    m_counting->setToolTip(m_context.text(isByHand ? L10nKey::rulesByHandHint : L10nKey::rulesByRulesHint));
    for (const Choice& choice : m_choices) {
        if (!isByHand) { // by hand they stay as they were, for a change of mind
            const auto chosen =
                std::ranges::find_if(choice.words, [&](Word word) { return contains(m_rules, word); });
            choice.list->setCurrentIndex(
                chosen == choice.words.end() ? 0 : static_cast<int>(chosen - choice.words.begin()));
        }
        const bool isSettled = (choice.name == "deciding" && m_match.numberOfSets == 1) ||
                               (choice.name == "game" && contains(m_rules, "fast4"));
        choice.box->setVisible(!isByHand && !isSettled);
    }
}

void RulesField::showTexts() {
    const auto showTitle = [](QWidget* box, QComboBox* list, const QString& title) {
        box->findChild<QLabel*>()->setText(title);
        list->setAccessibleName(title);
    };
    showTitle(m_countingBox, m_counting, m_context.text(L10nKey::rulesCounting));
    m_counting->setItemText(0, m_context.text(L10nKey::rulesByRules));
    m_counting->setItemText(1, m_context.text(L10nKey::rulesByHand));
    for (const Choice& choice : m_choices) {
        const auto& text = *std::ranges::find(choiceTexts, choice.name, &ChoiceText::choice);
        showTitle(choice.box, choice.list, m_context.text(text.title));
        for (std::size_t i = 0; i < choice.words.size(); ++i)
            choice.list->setItemText(static_cast<int>(i),
                                     wordText(m_context, *m_offered, choice.name, choice.words[i]));
    }
    showLists();
}

}
