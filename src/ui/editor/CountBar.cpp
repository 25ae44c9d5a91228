#include "ui/editor/CountBar.h"

#include "session/PointEdits.h"
#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"

#include <algorithm>

namespace pointloom {

namespace {

struct Stop {
    Marker marker;
    bool isAfterEnd; // of the match
};

/// Where the last recount stopped, as long as the marker there does not follow the one before.
std::optional<Stop> stopOfRecount(const AppState& state) {
    const auto& id = state.recountStoppedAt.value();
    const auto match = id ? PointEdits::countedMatch(state) : std::nullopt;
    if (!match)
        return std::nullopt;
    const auto found = std::ranges::find(match->markers, *id, &Marker::id);
    if (found == match->markers.end())
        return std::nullopt;
    const auto place = static_cast<std::size_t>(found - match->markers.begin());
    const CountedScore before = scoreBefore(*match, place);
    const CountStep step = stepBetween(match->rules, before, scoreBefore(*match, place + 1));
    if (step.kind != CountStep::Kind::entered)
        return std::nullopt;
    return Stop{*found, isMatchOver(match->rules, before.score)};
}

/// Words of the session's rules that its sport does not have.
QString unknownRules(const AppState& state) {
    const auto& config = state.matchConfig.value();
    try {
        if (config)
            rulesOfMatch(*config, state.rules.value());
    } catch (const FormatError& error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

}

CountBar::CountBar(const UiContext& context, QWidget* parent)
    : MessageBar(context, parent)
    , m_context(context) {
    connect(this, &MessageBar::firstActionChosen, this, &CountBar::act);
    connect(this, &MessageBar::closed, this, &CountBar::forget);
    AppState& state = m_context.state;
    m_bindings.watchAll([this] { refresh(); }, state.markers, state.initialScore, state.matchConfig,
                        state.rules, state.recountStoppedAt, state.typedScore, state.language);
}

void CountBar::refresh() {
    const AppState& state = m_context.state;
    if (PointEdits::carriedOn(state)) {
        say(m_context.text(L10nKey::countOffer), {}, m_context.text(L10nKey::countCarryOn));
    } else if (const auto stop = stopOfRecount(state)) {
        const L10nKey text = stop->isAfterEnd ? L10nKey::countStoppedAtEnd : L10nKey::countStopped;
        say(format(m_context.text(text), shortTime(stop->marker.startTime, true)), {},
            m_context.text(L10nKey::countShow));
    } else if (const QString fault = unknownRules(state); !fault.isEmpty() && fault != m_closedFault) {
        say(m_context.text(L10nKey::countUnknownRules), fault, {});
    } else {
        hide();
    }
}

// What is shown already is not told again to screen readers.
void CountBar::say(const QString& text, const QString& detail, const QString& action) {
    if (isHidden() || text != message())
        showMessage(text, detail, action);
}

void CountBar::sayThatMatchIsOver() {
    const AppState& state = m_context.state;
    QString result;
    if (const auto& markers = state.markers.value(); !markers.empty())
        result = setsText(markers.back().score);
    showMessage(m_context.text(L10nKey::countMatchIsOver), result);
}

void CountBar::act() {
    AppState& state = m_context.state;
    if (PointEdits::carriedOn(state)) {
        PointEdits::carryOn(state, &m_context.undo);
    } else if (const auto stop = stopOfRecount(state)) {
        state.selectedMarkerID = stop->marker.id;
        Q_EMIT seekRequested(stop->marker.startTime);
    }
}

void CountBar::forget() {
    m_closedFault = unknownRules(m_context.state);
    m_context.state.typedScore = std::nullopt;
    m_context.state.recountStoppedAt = std::nullopt;
    hide();
}

}
