// The match's logo as a picture, read in the background whenever another one is chosen.
#pragma once

#include "session/AppState.h"
#include "ui/common/BackgroundTask.h"
#include "ui/style/Bindings.h"

#include <QImage>
#include <QObject>

namespace pointloom {

class LogoWatch : public QObject {
    Q_OBJECT

public:
    /// `state` outlives this.
    explicit LogoWatch(AppState& state, QObject* parent = nullptr);

    /// Null when the match has none, or it cannot be read.
    const QImage& image() const { return m_image; }

Q_SIGNALS:
    void changed();

private:
    void follow();

    AppState& m_state;
    QString m_path;
    QImage m_image;
    BackgroundTask<QImage> m_reading;
    Bindings m_bindings;
};

}
