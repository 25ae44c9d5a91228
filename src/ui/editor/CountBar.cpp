#include "ui/editor/CountBar.h"

#include "session/PointEdits.h"
#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"

#include <algorithm>

namespace pointloom {

namespace {

/// The marker at which the last recount stopped, as long as it does not follow the one before.
const Marker* unfollowedMarker(const AppState& state) {
    const auto& id = state.recountStoppedAt.value();
    const auto match = id ? PointEdits::countedMatch(state) : std::nullopt;
    if (!match)
        return nullptr;
    const auto& markers = state.markers.value();
    const auto found = std::ranges::find(markers, *id, &Marker::id);
    if (found == markers.end())
        return nullptr;
    const auto steps = stepsOf(*match);
    const auto& step = steps[static_cast<std::size_t>(found - markers.begin())];
    return step.kind == CountStep::Kind::entered ? &*found : nullptr;
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
    } else if (const Marker* stopped = unfollowedMarker(state)) {
        say(format(m_context.text(L10nKey::countStopped), shortTime(stopped->startTime, true)),
            m_context.text(L10nKey::countStoppedDetail), m_context.text(L10nKey::countShow));
    } else if (const QString fault = unknownRules(state); !fault.isEmpty()) {
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
    } else if (const Marker* stopped = unfollowedMarker(state)) {
        const double time = stopped->startTime;
        state.selectedMarkerID = stopped->id;
        Q_EMIT seekRequested(time);
    }
}

void CountBar::forget() {
    m_context.state.typedScore = std::nullopt;
    m_context.state.recountStoppedAt = std::nullopt;
    hide();
}

}
