#include "ui/settings/HelpDialog.h"

#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QPushButton>

namespace pointloom::test {
namespace {

QStringList textsOf(const QWidget& widget) {
    QStringList texts;
    for (const QLabel* label : widget.findChildren<QLabel*>())
        texts << label->text();
    return texts;
}

TEST(HelpDialogTest, FollowsTheLanguageAndNamesThisDesktopsKeys) {
    ScreenContext screen;
    HelpDialog help(screen.context, nullptr);
    help.show();
    EXPECT_TRUE(textsOf(help).contains(QStringLiteral("Step 1 — Choose a Sport")));
    EXPECT_TRUE(textsOf(help).contains(QStringLiteral("Ctrl+Shift+E")));
    screen.state.language = Language::german;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QStringList german = textsOf(help);
    EXPECT_EQ(help.windowTitle(), QStringLiteral("Pointloom Hilfe"));
    EXPECT_TRUE(german.contains(QStringLiteral("Strg+Umschalt+E")));
    EXPECT_TRUE(german.contains(QStringLiteral("Leertaste")));
    EXPECT_FALSE(german.contains(QStringLiteral("Ctrl+Shift+E")));
    EXPECT_FALSE(german.join(u' ').contains(u'⌘'));
    EXPECT_TRUE(german.contains(QStringLiteral("Vergrößern (→ ↑) oder verkleinern (← ↓)")));
    EXPECT_TRUE(german.contains(QStringLiteral("Diese Hilfe")));
}

}
}
