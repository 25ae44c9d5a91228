#include "ui/wizard/WizardFlow.h"

#include "l10n/Countries.h"
#include "l10n/Format.h"
#include "ui/common/Preferences.h"

#include <algorithm>
#include <QScopedValueRollback>

namespace pointloom {

namespace {

bool offersSets(SportID sport, std::int64_t count) {
    const auto options = numberOfSetsOptions(sport);
    return std::ranges::find(options, count) != options.end();
}

bool isFilled(const std::optional<QString>& name) {
    return name && !name->trimmed().isEmpty();
}

// Indoor volleyball is played to three won sets.
std::int64_t usualNumberOfSets(SportID sport) {
    return sport == SportID::volleyball ? 5 : defaultNumberOfSets(sport);
}

std::string numberOfSetsKey(SportID sport) {
    return "numberOfSets." + std::string(rawValue(sport));
}

std::optional<QString> countryCode(const std::optional<QString>& flag) {
    const auto country = flag ? countryOf(*flag, Language::english) : std::nullopt;
    return country ? std::optional(country->code) : std::nullopt;
}

// Without what the form keeps in case the user changes the format back, such as partners in singles.
TeamConfig confirmed(const TeamConfig& team, MatchFormat format) {
    TeamConfig result;
    result.player1 = team.player1.trimmed();
    result.flag1 = countryCode(team.flag1);
    if (format == MatchFormat::doubles && isFilled(team.player2)) {
        result.player2 = team.player2->trimmed();
        result.flag2 = countryCode(team.flag2);
    }
    return result;
}

// The match in another sport, with its defaults for what it does not offer.
MatchConfig matchIn(SportID sport, MatchConfig match) {
    if (match.sport == sport)
        return match;
    match.sport = sport;
    if (!supportsDoubles(sport))
        match.format = MatchFormat::singles;
    if (!offersSets(sport, match.numberOfSets))
        match.numberOfSets = usualNumberOfSets(sport);
    return match;
}

// A document may have a format or a number of sets that the form does not offer.
MatchConfig withinLimits(MatchConfig match) {
    if (!supportsDoubles(match.sport))
        match.format = MatchFormat::singles;
    match.numberOfSets = std::clamp<std::int64_t>(match.numberOfSets, 0, largestNumberOfSets);
    return match;
}

std::string rulesKey(SportID sport) {
    return "rules." + std::string(rawValue(sport));
}

// Usual rules while none are remembered that this version knows.
std::vector<std::string> rememberedRules(const UserDefaults& defaults, SportID sport) {
    std::vector<std::string> rules;
    for (const QByteArray& word : Preferences::remembered(defaults, rulesKey(sport)).split(',')) {
        if (!word.isEmpty())
            rules.push_back(word.toStdString());
    }
    try {
        rulesOfMatch(emptyMatch(sport), rules);
        return rules;
    } catch (const FormatError&) {
        return {};
    }
}

void rememberRules(UserDefaults& defaults, SportID sport, const std::vector<std::string>& rules) {
    QByteArrayList words;
    for (const std::string& word : rules)
        words << QByteArray::fromStdString(word);
    Preferences::remember(defaults, rulesKey(sport), words.join(','));
}

bool isDoneIn(const AppState& state, Screen screen) {
    switch (screen) {
    case Screen::sport:
        return state.step > Screen::sport || state.selectedTemplate.value();
    case Screen::scoreboard:
        return state.selectedTemplate.value().has_value();
    case Screen::match:
        return state.matchConfig.value().has_value();
    case Screen::video:
        return state.videoURL.value().has_value();
    case Screen::editor:
        return false;
    }
    Q_UNREACHABLE();
}

}

bool isReachable(const AppState& state, Screen screen) {
    return std::ranges::all_of(wizardScreens,
                               [&](Screen earlier) { return earlier >= screen || isDoneIn(state, earlier); });
}

L10nKey sportName(SportID sport) {
    switch (sport) {
    case SportID::tennis:
        return L10nKey::sportTennis;
    case SportID::padel:
        return L10nKey::sportPadel;
    case SportID::volleyball:
        return L10nKey::sportVolleyball;
    case SportID::badminton:
        return L10nKey::sportBadminton;
    case SportID::tableTennis:
        return L10nKey::sportTableTennis;
    case SportID::squash:
        return L10nKey::sportSquash;
    case SportID::pickleball:
        return L10nKey::sportPickleball;
    }
    Q_UNREACHABLE();
}

bool isTeamSport(SportID sport) {
    return sport == SportID::volleyball;
}

MatchConfig emptyMatch(SportID sport) {
    MatchConfig match;
    match.sport = sport;
    match.numberOfSets = usualNumberOfSets(sport);
    return match;
}

bool isComplete(const MatchConfig& match) {
    const auto isNamed = [&](const TeamConfig& team) {
        return !team.player1.trimmed().isEmpty() &&
               (match.format == MatchFormat::singles || isFilled(team.player2));
    };
    return isNamed(match.team1) && isNamed(match.team2);
}

WizardFlow::WizardFlow(const UiContext& context, QObject* parent)
    : QObject(parent)
    , m_context(context) {
    AppState& state = m_context.state;
    m_bindings.watchAll([this] { followSession(); }, state.matchConfig, state.rules, state.selectedTemplate,
                        state.selectedSport);
}

void WizardFlow::followSession() {
    if (!m_isOwnChange)
        readSession();
}

void WizardFlow::readSession() {
    const auto& match = m_context.state.matchConfig.value();
    const SportID sport = m_context.state.selectedSport;
    m_draft = match ? withinLimits(*match) : emptyMatch(sport);
    if (!match)
        m_draft.numberOfSets = firstNumberOfSets(sport);
    m_rules = match ? m_context.state.rules.value() : rememberedRules(m_context.defaults, sport);
    Q_EMIT draftReplaced();
}

// The one that the user confirmed last in this sport, else the usual one.
std::int64_t WizardFlow::firstNumberOfSets(SportID sport) const {
    const std::int64_t last =
        Preferences::remembered(m_context.defaults, numberOfSetsKey(sport)).toLongLong();
    return offersSets(sport, last) ? last : usualNumberOfSets(sport);
}

bool WizardFlow::pickSport(SportID sport, QWidget* window) {
    AppState& state = m_context.state;
    if (sport == state.selectedSport) {
        state.save();
        return true;
    }
    const bool losing = losesScores(sport);
    if (losing && !confirmsLossOfScores(sport, window))
        return false;

    const QScopedValueRollback guard(m_isOwnChange, true);
    if (losing) {
        state.selectedMarkerID = std::nullopt;
        state.markers = std::vector<Marker>{};
        state.initialScore = std::nullopt;
        m_context.undo.removeAllActions(); // they would restore such scores
    }
    const auto fitting = filteredTemplates(sport);
    if (const auto chosen = state.selectedTemplate.value();
        chosen && std::ranges::find(fitting, *chosen) == fitting.end())
        state.selectedTemplate = std::nullopt;
    if (!state.selectedTemplate.value())
        m_draft.board = std::nullopt;
    m_draft = matchIn(sport, m_draft);
    m_rules = rememberedRules(m_context.defaults, sport);
    if (const auto match = state.matchConfig.value()) {
        MatchConfig moved = matchIn(sport, *match);
        moved.board = m_draft.board;
        if (hasScoreAfterSet(moved.numberOfSets)) // the form offers the number that there is, too
            moved.numberOfSets = m_draft.numberOfSets = match->numberOfSets;
        state.setNumberOfSets(moved.numberOfSets, &m_context.undo);
        state.matchConfig = moved;
        state.rules = m_rules;
    } else {
        m_draft.numberOfSets = firstNumberOfSets(sport);
    }
    state.selectedSport = sport;
    state.save();
    Q_EMIT draftReplaced();
    return true;
}

bool WizardFlow::losesScores(SportID sport) const {
    const auto isForeign = [&](const SportScoreState& score) {
        return std::holds_alternative<ScoreState>(score) != usesTennisScoring(sport);
    };
    const AppState& state = m_context.state;
    const auto& initial = state.initialScore.value();
    return (initial && isForeign(*initial)) ||
           std::ranges::any_of(state.markers.value(), isForeign, &Marker::score);
}

bool WizardFlow::confirmsLossOfScores(SportID sport, QWidget* window) const {
    return m_context.dialogs.confirm(
        window, m_context.text(L10nKey::wizardChangeSportTitle),
        format(m_context.text(L10nKey::wizardChangeSportMessage), m_context.text(sportName(sport))),
        m_context.text(L10nKey::wizardChangeSportConfirm), m_context.text(L10nKey::cancel));
}

void WizardFlow::pickTemplate(TemplateID templateID, const std::optional<BoardStyle>& board) {
    const QScopedValueRollback guard(m_isOwnChange, true);
    AppState& state = m_context.state;
    m_draft.board = board;
    if (auto match = state.matchConfig.value()) {
        match->board = board;
        state.matchConfig = match;
    }
    state.selectedTemplate = templateID;
    state.save();
    Q_EMIT draftReplaced();
}

bool WizardFlow::hasScoreAfterSet(std::int64_t count) const {
    const auto hasMore = [&](const SportScoreState& score) {
        return pointloom::hasScoreAfterSet(score, count);
    };
    const auto& initial = m_context.state.initialScore.value();
    return (initial && hasMore(*initial)) ||
           std::ranges::any_of(m_context.state.markers.value(), hasMore, &Marker::score);
}

bool WizardFlow::confirmsLossOfSets(QWidget* window) const {
    return m_context.dialogs.confirm(
        window, m_context.text(L10nKey::wizardRemoveSetsTitle),
        format(m_context.text(L10nKey::wizardRemoveSetsMessage), m_draft.numberOfSets + 1),
        m_context.text(L10nKey::wizardRemoveSetsConfirm), m_context.text(L10nKey::cancel));
}

bool WizardFlow::confirmMatch(QWidget* window) {
    AppState& state = m_context.state;
    const auto& before = state.matchConfig.value();
    const bool changesSets = before && withinLimits(*before).numberOfSets != m_draft.numberOfSets;
    if (changesSets && hasScoreAfterSet(m_draft.numberOfSets) && !confirmsLossOfSets(window))
        return false;
    const QScopedValueRollback guard(m_isOwnChange, true);
    if (changesSets)
        state.setNumberOfSets(m_draft.numberOfSets, &m_context.undo);
    MatchConfig match = m_draft;
    match.team1 = confirmed(m_draft.team1, m_draft.format);
    match.team2 = confirmed(m_draft.team2, m_draft.format);
    state.matchConfig = match;
    state.rules = m_rules;
    if (m_rules != rememberedRules(m_context.defaults, match.sport))
        rememberRules(m_context.defaults, match.sport, m_rules);
    state.save();
    if (match.numberOfSets != firstNumberOfSets(match.sport))
        Preferences::remember(m_context.defaults, numberOfSetsKey(match.sport),
                              QByteArray::number(static_cast<qlonglong>(match.numberOfSets)));
    return true;
}

void WizardFlow::openEditor() {
    m_context.state.step = Screen::editor;
    m_context.state.save();
}

bool WizardFlow::isDone(Screen screen) const {
    const auto& match = m_context.state.matchConfig.value();
    if (screen == Screen::match && match)
        return isComplete(m_draft) || m_draft == withinLimits(*match);
    return isDoneIn(m_context.state, screen);
}

bool WizardFlow::isReachable(Screen screen) const {
    return std::ranges::all_of(wizardScreens,
                               [&](Screen earlier) { return earlier >= screen || isDone(earlier); });
}

}
