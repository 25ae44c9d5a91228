// What desktops say about motion.
#include "ui/style/Motion.h"

#include <gtest/gtest.h>
#include <QApplication>

namespace pointloom::test {

namespace {

DesktopSettings with(const char* nameSpace, const char* key, const QVariant& value) {
    return {{QString::fromUtf8(nameSpace), {{QString::fromUtf8(key), value}}}};
}

}

TEST(Motion, IsReducedWhereTheDesktopAsksForIt) {
    EXPECT_FALSE(asksForLessMotion({}));
    EXPECT_TRUE(asksForLessMotion(with("org.gnome.desktop.interface", "enable-animations", false)));
    EXPECT_FALSE(asksForLessMotion(with("org.gnome.desktop.interface", "enable-animations", true)));
    EXPECT_TRUE(asksForLessMotion(with("org.freedesktop.appearance", "reduced-motion", 1U)));
    EXPECT_FALSE(asksForLessMotion(with("org.freedesktop.appearance", "reduced-motion", 0U)));
    const char* const plasma = "org.kde.kdeglobals.KDE";
    EXPECT_TRUE(asksForLessMotion(with(plasma, "AnimationDurationFactor", QStringLiteral("0"))));
    EXPECT_FALSE(asksForLessMotion(with(plasma, "AnimationDurationFactor", QStringLiteral("0.5"))));
    EXPECT_FALSE(asksForLessMotion(with(plasma, "AnimationDurationFactor", QStringLiteral("fast"))));
}

TEST(Motion, MenusAppearAtOnceWhenItIsReduced) {
    QApplication::setEffectEnabled(Qt::UI_FadeMenu);
    Motion::shared().take(with("org.gnome.desktop.interface", "enable-animations", false));
    EXPECT_TRUE(Motion::shared().isReduced());
    EXPECT_FALSE(QApplication::isEffectEnabled(Qt::UI_FadeMenu));
    Motion::shared().take({});
    EXPECT_FALSE(Motion::shared().isReduced());
    EXPECT_TRUE(QApplication::isEffectEnabled(Qt::UI_FadeMenu));
}

}
