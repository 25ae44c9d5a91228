// All screens and dialogs for those who read them by a screen reader, and for weak eyes.
#include "app/Shell.h"
#include "support/Contrast.h"
#include "support/Sessions.h"

#include <map>
#include <QAbstractButton>
#include <QAccessible>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

namespace pointloom::test {
namespace {

class AccessTest : public Shell {
protected:
    // Calls `look` with each screen of the window, and with each dialog over it.
    void atEach(const std::function<void(QWidget&, const std::string&)>& look) {
        configure();
        state->videoURL = QUrl::fromLocalFile(makeClip(QStringLiteral("clip.mp4")));
        state->videoDuration = 2;
        state->addCut({QUuid::createUuid(), 0.5, 1}, undo.get());
        state->selectedMarkerID = state->markers.value().front().id;
        state->selectedCutID = std::nullopt;
        window->resize(1100, 760);
        for (int screen = 0; screen <= static_cast<int>(Screen::editor); ++screen) {
            state->step = static_cast<Screen>(screen);
            QTest::qWait(50);
            look(*window->content().currentWidget(), "screen " + std::to_string(screen));
        }
        for (const char* title : {"Export Video…", "Exports…", "Preferences…", "Help…", "About Pointloom",
                                  "Licence…", "Preview Frame", "What’s New…"}) {
            choose(QString::fromUtf8(title));
            QTest::qWait(50);
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr) << title;
            look(*dialog, title);
            dialog->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    static QList<QWidget*> visiblePartsOf(const QWidget& screen) {
        QList<QWidget*> parts = screen.findChildren<QWidget*>();
        parts.removeIf([](const QWidget* part) { return !part->isVisible(); });
        return parts;
    }
};

TEST_F(AccessTest, WhateverTakesTheFocusHasARoleAndAName) {
    atEach([](QWidget& screen, const std::string& name) {
        for (QWidget* part : visiblePartsOf(screen)) {
            if (!(part->focusPolicy() & Qt::TabFocus) || part->focusProxy())
                continue;
            QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(part);
            ASSERT_NE(interface, nullptr);
            EXPECT_NE(interface->text(QAccessible::Name), QString())
                << name << ": " << part->metaObject()->className() << " " << part->objectName().toStdString()
                << " in " << part->parentWidget()->metaObject()->className();
            EXPECT_NE(interface->role(), QAccessible::NoRole) << name;
            EXPECT_TRUE(interface->role() != QAccessible::Client || qobject_cast<QScrollArea*>(part))
                << name << ": " << interface->text(QAccessible::Name).toStdString();
        }
    });
}

// The most frequent colour: around letters that is what they are written on.
QColor groundOf(const QImage& picture) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    const auto most = std::ranges::max_element(counts, {}, [](const auto& entry) { return entry.second; });
    return most == counts.end() ? QColor() : QColor(most->first);
}

TEST_F(AccessTest, TextStandsOutFromWhatItIsWrittenOn) {
    for (const ThemeChoice theme : {ThemeChoice::dark, ThemeChoice::light}) {
        start();
        Theme::shared().apply(*qApp, theme);
        atEach([](QWidget& screen, const std::string& name) {
            const QImage whole = screen.grab().toImage();
            for (QWidget* part : visiblePartsOf(screen)) {
                const auto* label = qobject_cast<QLabel*>(part);
                const auto* button = qobject_cast<QAbstractButton*>(part);
                const auto* field = qobject_cast<QLineEdit*>(part);
                const QString text = label    ? label->text()
                                     : button ? button->text()
                                     : field  ? field->text()
                                              : QString();
                QRect place(part->mapTo(&screen, QPoint(0, 0)), part->size());
                // What is written on a card is below its picture.
                constexpr int mostLines = 3;
                place.setTop(
                    std::max(place.top(), place.bottom() - mostLines * part->fontMetrics().height()));
                if (text.isEmpty() || !part->isEnabled() || !whole.rect().contains(place))
                    continue;
                const QColor ink = part->palette().color(part->foregroundRole());
                const QColor ground = groundOf(whole.copy(place));
                EXPECT_GE(contrast(ink, ground), 4.5)
                    << name << ": \"" << text.toStdString() << "\", " << ink.name().toStdString() << " on "
                    << ground.name().toStdString();
            }
        });
    }
}

}
}
