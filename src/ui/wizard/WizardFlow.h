// The operations of the wizard on the session, and the match that its form edits.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <array>
#include <QObject>

namespace pointloom {

/// The wizard's screens in their order.
inline constexpr std::array wizardScreens{Screen::sport, Screen::scoreboard, Screen::match, Screen::video};

/// True when the session holds what every screen before this one asks for.
bool isReachable(const AppState& state, Screen screen);

L10nKey sportName(SportID sport);

/// True when a side of the sport is a team, which has a name of its own.
bool isTeamSport(SportID sport);

/// A match without names, with what is usual in the sport.
MatchConfig emptyMatch(SportID sport);

/// True when both names are entered, in doubles all four.
bool isComplete(const MatchConfig& match);

class WizardFlow : public QObject {
    Q_OBJECT

public:
    explicit WizardFlow(const UiContext& context, QObject* parent = nullptr);

    /// Sets the sport and saves. When it changes, a template that the sport does not have is removed, and the
    /// match gets the sport's defaults where it needs them. Scores of another kind are deleted after a
    /// question over `window`; false when the user declines, and then nothing changes.
    bool pickSport(SportID sport, QWidget* window);

    /// With the board that is made from it, if any, and saves.
    void pickTemplate(TemplateID templateID, const std::optional<BoardStyle>& board = {});

    /// The match as entered; `confirmMatch` copies it to the session.
    const MatchConfig& draft() const { return m_draft; }
    void setDraft(const MatchConfig& match) { m_draft = match; }

    /// As `AppState::rules`; for a new match those that were chosen last in its sport.
    const std::vector<std::string>& rules() const { return m_rules; }
    void setRules(const std::vector<std::string>& rules) { m_rules = rules; }

    /// Replaces the draft by the session's match or an empty one. Called when the session was replaced: the
    /// fields notify only when their values differ.
    void readSession();

    /// Copies the draft, which is complete, and its rules to the session, saves, and remembers the rules for
    /// the sport. Another number of sets is given to all scores; when that removes entered ones, a question
    /// over `window` comes first. False when the user declines, and then nothing changes.
    bool confirmMatch(QWidget* window);

    /// Shows the editor and saves.
    void openEditor();

    /// True when the user has made the choice of the screen. A match that was confirmed and is being edited
    /// is done when it can be confirmed again.
    bool isDone(Screen screen) const;

    /// True when every screen before this one is done.
    bool isReachable(Screen screen) const;

Q_SIGNALS:
    /// The session was replaced or reset: forms read the draft again.
    void draftReplaced();

private:
    void followSession();
    std::int64_t firstNumberOfSets(SportID sport) const;
    bool losesScores(SportID sport) const;
    bool confirmsLossOfScores(SportID sport, QWidget* window) const;
    bool hasScoreAfterSet(std::int64_t count) const;
    bool confirmsLossOfSets(QWidget* window) const;

    UiContext m_context;
    MatchConfig m_draft;
    std::vector<std::string> m_rules;
    bool m_isOwnChange = false;
    Bindings m_bindings;
};

}
