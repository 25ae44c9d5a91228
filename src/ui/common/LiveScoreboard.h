// The scoreboard of the session at the playhead, with the match's logo read in the background.
#pragma once

#include "session/AppState.h"
#include "ui/common/BackgroundTask.h"
#include "ui/common/ScoreboardView.h"
#include "ui/style/Bindings.h"

#include <QObject>

namespace pointloom {

class LiveScoreboard : public QObject {
    Q_OBJECT

public:
    /// `state` outlives this.
    explicit LiveScoreboard(AppState& state, QObject* parent = nullptr);

    /// Without a template or a match there is none. The logo is null while it is read and where it cannot be.
    std::optional<Scoreboard> scoreboard() const;

Q_SIGNALS:
    void changed();

private:
    void readLogo();

    AppState& m_state;
    QString m_logoPath;
    QImage m_logo;
    BackgroundTask<QImage> m_reading;
    Bindings m_bindings;
};

}
