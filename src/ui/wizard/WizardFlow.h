// What the setup does to the session, step by step, and the match as it stands in the form.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <array>
#include <QObject>

namespace pointloom {

/// The wizard's screens in their order.
inline constexpr std::array wizardScreens{Screen::sport, Screen::scoreboard, Screen::match, Screen::video};

/// The match of a sport that nothing is known of yet.
MatchConfig emptyMatch(SportID sport);

/// Both names are there, in doubles all four.
bool isComplete(const MatchConfig& match);

class WizardFlow : public QObject {
    Q_OBJECT

public:
    explicit WizardFlow(const UiContext& context, QObject* parent = nullptr);

    /// Chooses the sport and saves. For another sport than before, a template that does not fit is removed
    /// and the match is brought to the sport. Scores that cannot be counted in it are deleted after a
    /// question over `window`; false when the user keeps them.
    bool pickSport(SportID sport, QWidget* window);

    void pickTemplate(TemplateID templateID);

    /// The match as entered so far; the session's own once it is confirmed.
    const MatchConfig& draft() const { return m_draft; }
    void setDraft(const MatchConfig& match) { m_draft = match; }

    /// Replaces the draft by the session's match, or by an empty one. Called when the session was replaced,
    /// which no field tells where all of them keep their values.
    void readSession();

    /// Makes the draft the session's match and saves. The draft is complete.
    void confirmMatch();

    /// Leaves the setup for the editor and saves.
    void openEditor();

    /// True when the user has made the choice of the screen.
    bool isDone(Screen screen) const;

    /// True when every screen before this one is done.
    bool isReachable(Screen screen) const;

Q_SIGNALS:
    /// The session was replaced or begun anew: forms read the draft again.
    void draftReplaced();

private:
    void followSession();
    bool losesScores(SportID sport) const;
    bool confirmsLossOfScores(SportID sport, QWidget* window) const;

    UiContext m_context;
    MatchConfig m_draft;
    bool m_isOwnChange = false;
    Bindings m_bindings;
};

}
