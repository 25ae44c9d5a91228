#include "ui/style/Controls.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QComboBox>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QWheelEvent>

namespace pointloom {

namespace {

// Whether the control kept it from the page.
bool turnWheel(QWidget& control) {
    QWheelEvent event(QPointF(5, 5), control.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    event.ignore();
    QCoreApplication::sendEvent(&control, &event);
    return event.isAccepted();
}

}

TEST(Wheel, ScrollsThePageAndChangesNoValue) {
    Controls::keepWheelForPages(*qApp);
    QWidget page;
    QComboBox list(&page);
    list.addItems({QStringLiteral("small"), QStringLiteral("large")});
    QSpinBox number(&page);
    QSlider slider(&page);
    QScrollBar bar(&page);
    slider.setValue(50);
    number.setValue(50);
    bar.setValue(50);
    page.show();
    number.setFocus();
    for (QWidget* control : std::initializer_list<QWidget*>{&list, &number, &slider})
        EXPECT_FALSE(turnWheel(*control)) << control->metaObject()->className();
    EXPECT_EQ(list.currentIndex(), 0);
    EXPECT_EQ(number.value(), 50);
    EXPECT_EQ(slider.value(), 50);
    EXPECT_TRUE(turnWheel(bar));
    EXPECT_NE(bar.value(), 50);
}

}
