// Theme of the application: palette and style sheet made from the tokens.
#pragma once

#include "ui/style/Tokens.h"
#include "json/JsonFields.h"

#include <QObject>

class QApplication;

namespace pointloom {

POINTLOOM_NAMED_ENUM(ThemeChoice, dark, light, desktop);

/// One for the application. Widgets that paint themselves read `tokens()` while painting and repaint on
/// `changed`.
class Theme : public QObject {
    Q_OBJECT

public:
    static Theme& shared();

    const ColorTokens& tokens() const { return *m_tokens; }
    ThemeChoice choice() const { return m_choice; }

    /// Applies palette and style sheet to the application. `desktop` is light when the desktop's own
    /// palette is, dark otherwise.
    void apply(QApplication& application, ThemeChoice choice);

Q_SIGNALS:
    void changed();

private:
    Theme() = default;

    ThemeChoice m_choice = ThemeChoice::dark;
    const ColorTokens* m_tokens = &darkTokens;
};

/// The tokens of the theme in use.
inline const ColorTokens& tokens() {
    return Theme::shared().tokens();
}

}
