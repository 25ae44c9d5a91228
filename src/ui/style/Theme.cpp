#include "ui/style/Theme.h"

#include "ui/style/Icons.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace pointloom {

namespace {

QPalette paletteOf(const ColorTokens& t) {
    QPalette palette;
    palette.setColor(QPalette::Window, t.window);
    palette.setColor(QPalette::WindowText, t.text);
    palette.setColor(QPalette::Base, t.raised);
    palette.setColor(QPalette::AlternateBase, t.surface);
    palette.setColor(QPalette::Text, t.text);
    palette.setColor(QPalette::PlaceholderText, t.quietText);
    palette.setColor(QPalette::Button, t.raised);
    palette.setColor(QPalette::ButtonText, t.text);
    palette.setColor(QPalette::Highlight, t.accent);
    palette.setColor(QPalette::HighlightedText, t.onAccent);
    palette.setColor(QPalette::ToolTipBase, t.raised);
    palette.setColor(QPalette::ToolTipText, t.text);
    palette.setColor(QPalette::Link, t.accent);
    palette.setColor(QPalette::Light, t.raised);
    palette.setColor(QPalette::Mid, t.line);
    palette.setColor(QPalette::Dark, t.line);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, t.quietText);
    return palette;
}

// @names are replaced by tokens; the rest is Qt's style sheet language.
constexpr const char* styleSheetPattern = R"(
QWidget { color: @text; }
QMainWindow, QDialog, QWidget[background="window"] { background: @window; }
QWidget[background="surface"] { background: @surface; }
QFrame[kind="card"] { background: @surface; border: 1px solid @line; border-radius: @cardRadiuspx; }
QFrame[kind="separator"] { background: @line; border: none; }

QLabel { background: transparent; }
QLabel[role="quiet"] { color: @quietText; }
QLabel[role="danger"] { color: @danger; }
QLabel[role="warning"] { color: @warning; }
QLabel[role="success"] { color: @success; }
QLabel[kind="key"] {
  background: @raised; border: 1px solid @line; border-bottom-width: 2px; border-radius: 4px; padding: 1px 6px;
}

QPushButton, QToolButton {
  background: @raised; color: @text; border: 1px solid @line; border-radius: @fieldRadiuspx; padding: 6px 14px;
}
QPushButton, QToolButton, QCheckBox, QRadioButton { outline: none; }
QPushButton:hover, QToolButton:hover { background: @line; }
QPushButton:focus, QToolButton:focus { border: 2px solid @accent; padding: 5px 13px; }
QPushButton:disabled, QToolButton:disabled { color: @quietText; background: @surface; }
QPushButton[kind="primary"] { background: @accent; color: @onAccent; border: 1px solid @accent; font-weight: 600; }
QPushButton[kind="primary"]:hover { background: @accentHover; border-color: @accentHover; }
QPushButton[kind="primary"]:focus { border: 2px solid @text; }
QPushButton[kind="primary"]:disabled { background: @raised; color: @quietText; border-color: @line; }
QPushButton[kind="danger"] { color: @danger; }
QPushButton[kind="plain"], QToolButton[kind="plain"] { background: transparent; border: 1px solid transparent; }
QPushButton[kind="plain"]:hover, QToolButton[kind="plain"]:hover { background: @raised; }
QPushButton[kind="plain"]:focus, QToolButton[kind="plain"]:focus { border: 2px solid @accent; }
QToolButton { padding: 5px; }
QToolButton:focus { padding: 4px; }
QToolButton:checked, QPushButton:checked { border: 2px solid @accent; color: @accent; }
QPushButton:checked { padding: 5px 13px; }
QToolButton:checked { padding: 4px; }
QToolButton:checked:focus, QPushButton:checked:focus { border-color: @text; }
QToolButton::menu-indicator { image: none; }
QToolButton[unusual="true"] { color: @accent; font-weight: 600; }

QLineEdit, QSpinBox, QDoubleSpinBox, QComboBox, QPlainTextEdit, QTextEdit {
  background: @raised; color: @text; border: 1px solid @line; border-radius: @fieldRadiuspx; padding: 6px 8px;
  selection-background-color: @accent; selection-color: @onAccent;
}
QLineEdit:focus, QSpinBox:focus, QDoubleSpinBox:focus, QComboBox:focus, QPlainTextEdit:focus, QTextEdit:focus {
  border: 2px solid @accent; padding: 5px 7px;
}
QLineEdit[kind="plain"] { background: transparent; border: 1px solid transparent; padding: 3px 4px; }
QLineEdit[kind="plain"]:hover { background: @raised; }
QLineEdit[kind="plain"]:focus { background: @raised; border: 2px solid @accent; padding: 2px 3px; }
QLineEdit[refused="true"]:focus { border-color: @danger; }
QLineEdit:disabled, QSpinBox:disabled, QDoubleSpinBox:disabled, QComboBox:disabled { color: @quietText; background: @surface; }
QDoubleSpinBox::up-button, QDoubleSpinBox::down-button { border: none; background: transparent; width: 18px; }
QDoubleSpinBox::up-arrow { image: url(:/icons/@mode/chevron-up.svg); width: 11px; height: 11px; }
QDoubleSpinBox::down-arrow { image: url(:/icons/@mode/chevron-down.svg); width: 11px; height: 11px; }
QComboBox::drop-down { border: none; width: 22px; }
QComboBox::down-arrow { image: url(:/icons/@mode/chevron-down.svg); width: 12px; height: 12px; }
QComboBox { combobox-popup: 0; } /* a list under the box; the other kind, over it, cuts its last row */
QComboBox QAbstractItemView {
  background: @raised; color: @text; border: 1px solid @line; padding: 4px; outline: none;
}
QComboBox QAbstractItemView::item { min-height: 28px; padding: 0 6px; border-radius: 4px; }
QComboBox QAbstractItemView::item:selected { background: @line; color: @text; }

QCheckBox, QRadioButton { spacing: 8px; background: transparent; }
QCheckBox:disabled { color: @quietText; }
QCheckBox::indicator, QRadioButton::indicator { width: 16px; height: 16px; border: 1px solid @quietText; background: @raised; }
QCheckBox::indicator { border-radius: 4px; }
QRadioButton::indicator { border-radius: 9px; }
QCheckBox::indicator:checked { background: @accent; border-color: @accent; image: url(:/icons/@mode/check-on-accent.svg); }
QRadioButton::indicator:checked { background: @accent; border: 4px solid @raised; }
QCheckBox::indicator:focus, QRadioButton::indicator:focus { border: 2px solid @accent; }

QMenuBar { background: @window; color: @text; }
QMenuBar::item { padding: 4px 10px; background: transparent; border-radius: 4px; }
QMenuBar::item:selected { background: @raised; }
QMenuBar QToolButton, QMenuBar QToolButton:focus { padding: 2px 8px; } /* no higher than the menus */
QMenu { background: @surface; color: @text; border: 1px solid @line; padding: 4px; }
QMenu::item { padding: 6px 28px 6px 14px; border-radius: 4px; }
QMenu::item:selected { background: @raised; }
QMenu::item:disabled { color: @quietText; }
QMenu::separator { height: 1px; background: @line; margin: 4px 8px; }
QToolTip { background: @raised; color: @text; border: 1px solid @line; padding: 6px; }

QProgressBar { background: @raised; border: none; border-radius: 4px; min-height: 8px; max-height: 8px; }
QProgressBar::chunk { background: @accent; border-radius: 4px; }

QSlider::groove:horizontal { height: 4px; background: @line; border-radius: 2px; }
QSlider::sub-page:horizontal { background: @accent; border-radius: 2px; }
QSlider::handle:horizontal { background: @text; width: 12px; height: 12px; margin: -4px 0; border-radius: 6px; }
QSlider::handle:horizontal:focus { background: @accent; }
QSlider::sub-page:horizontal:disabled { background: @line; }
QSlider::handle:horizontal:disabled { background: @quietText; }

QScrollArea { background: transparent; border: none; }
QScrollArea > QWidget > QWidget { background: transparent; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 2px; }
QScrollBar:horizontal { background: transparent; height: 10px; margin: 2px; }
QScrollBar::handle { background: @line; border-radius: 3px; }
QScrollBar::handle:vertical { min-height: 28px; }
QScrollBar::handle:horizontal { min-width: 28px; }
QScrollBar::handle:hover { background: @quietText; }
QScrollBar::add-line, QScrollBar::sub-line, QScrollBar::add-page, QScrollBar::sub-page { background: none; border: none; height: 0; width: 0; }

QListView { background: transparent; border: none; outline: none; }
QListView::item { border-radius: @fieldRadiuspx; padding: 4px; }
QListView::item:selected { background: @raised; color: @text; }
QListView:focus { border: none; }
QListView[kind="popup"] { background: @raised; border: 1px solid @line; padding: 2px; }
QListView[kind="popup"]::item:selected { background: @line; }
QSplitter::handle { background: @line; }
QSplitter::handle:hover { background: @accent; }
)";

QString styleSheetOf(const ColorTokens& t, bool isDark) {
    QString sheet = QString::fromUtf8(styleSheetPattern);
    const std::pair<const char*, QString> names[] = {
        // The longer of two names with the same beginning comes first.
        {"@accentHover", t.accentHover.name()},
        {"@onAccent", t.onAccent.name()},
        {"@quietText", t.quietText.name()},
        {"@window", t.window.name()},
        {"@surface", t.surface.name()},
        {"@raised", t.raised.name()},
        {"@line", t.line.name()},
        {"@text", t.text.name()},
        {"@accent", t.accent.name()},
        {"@danger", t.danger.name()},
        {"@warning", t.warning.name()},
        {"@success", t.success.name()},
        {"@cardRadius", QString::number(Radius::card)},
        {"@fieldRadius", QString::number(Radius::field)},
        {"@mode", isDark ? QStringLiteral("dark") : QStringLiteral("light")},
    };
    for (const auto& [name, value] : names)
        sheet.replace(QString::fromUtf8(name), value);
    return sheet;
}

// Read before our own palette covers it.
bool desktopIsLight() {
    static const bool isLight =
        QApplication::style()->standardPalette().color(QPalette::Window).lightness() > 127 &&
        QApplication::palette().color(QPalette::Window).lightness() > 127;
    return isLight;
}

}

Theme& Theme::shared() {
    static Theme theme;
    return theme;
}

void Theme::apply(QApplication& application, ThemeChoice choice) {
    const bool isDesktopLight = desktopIsLight();
    const bool isLight = choice == ThemeChoice::light || (choice == ThemeChoice::desktop && isDesktopLight);
    Icons::makeAvailable();
    m_choice = choice;
    m_tokens = isLight ? &lightTokens : &darkTokens;
    application.setStyle(QStyleFactory::create(QStringLiteral("Fusion"))); // the application takes it over
    application.setPalette(paletteOf(*m_tokens));
    application.setStyleSheet(styleSheetOf(*m_tokens, !isLight));
    Q_EMIT changed();
}

}
