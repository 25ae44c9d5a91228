#include "ui/wizard/ColorField.h"

#include "ui/style/Controls.h"
#include "ui/style/Theme.h"

#include <algorithm>
#include <array>
#include <functional>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QSlider>
#include <QVBoxLayout>
#include <utility>

namespace pointloom {

namespace {

QColor shown(BoardColor color) {
    return {color.red, color.green, color.blue, color.alpha};
}

BoardColor boardColor(const QColor& color, std::uint8_t alpha) {
    return {static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
            static_cast<std::uint8_t>(color.blue()), alpha};
}

void paintColor(QPainter& painter, const QRectF& area, const QColor& color, double radius) {
    QPainterPath shape;
    shape.addRoundedRect(area, radius, radius);
    painter.setRenderHint(QPainter::Antialiasing);
    if (color.alpha() < 255) { // over a chequered ground
        painter.fillPath(shape, Qt::white);
        painter.fillPath(shape, QBrush(QColor(Qt::gray), Qt::Dense4Pattern));
    }
    painter.fillPath(shape, color);
    painter.strokePath(shape, QPen(tokens().line, 1));
}

/// Rows of colours; the arrow keys and a click choose one.
class Palette final : public QWidget {
public:
    Palette(std::function<void(const QColor&)> picked, QWidget* parent)
        : QWidget(parent)
        , m_picked(std::move(picked)) {
        setFocusPolicy(Qt::StrongFocus);
        setFixedSize(columns * pitch - gap, rows * pitch - gap);
    }

    /// The colour nearest to it is where the keys begin.
    void setCurrent(const QColor& color) {
        const auto distance = [&](int index) {
            const QColor each = colorAt(index);
            const auto squared = [](int difference) { return difference * difference; };
            return squared(each.red() - color.red()) + squared(each.green() - color.green()) +
                   squared(each.blue() - color.blue());
        };
        m_current = 0;
        for (int index = 1; index < columns * rows; ++index) {
            if (distance(index) < distance(m_current))
                m_current = index;
        }
        m_isExact = distance(m_current) == 0;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        for (int index = 0; index < columns * rows; ++index)
            paintColor(painter, QRectF(place(index)).adjusted(0.5, 0.5, -0.5, -0.5), colorAt(index), 4);
        if (!m_isExact && !hasFocus())
            return;
        painter.setPen(QPen(tokens().text, 2));
        painter.drawRoundedRect(QRectF(place(m_current)).adjusted(1, 1, -1, -1), 4, 4);
    }

    void mousePressEvent(QMouseEvent* event) override {
        for (int index = 0; index < columns * rows; ++index) {
            if (place(index).contains(event->position().toPoint()))
                choose(index);
        }
    }

    void keyPressEvent(QKeyEvent* event) override {
        const int column = m_current % columns;
        const int row = m_current / columns;
        const auto move = [&](int toColumn, int toRow) {
            choose(std::clamp(toRow, 0, rows - 1) * columns + std::clamp(toColumn, 0, columns - 1));
        };
        switch (event->key()) {
        case Qt::Key_Left:
            return move(column - 1, row);
        case Qt::Key_Right:
            return move(column + 1, row);
        case Qt::Key_Up:
            return move(column, row - 1);
        case Qt::Key_Down:
            return move(column, row + 1);
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            choose(m_current);
            window()->close();
            return;
        default:
            QWidget::keyPressEvent(event);
        }
    }

private:
    static constexpr int side = 22;
    static constexpr int gap = 4;
    static constexpr int pitch = side + gap;
    static constexpr std::array hues{0, 18, 36, 50, 80, 140, 170, 196, 216, 240, 275, 330};
    static constexpr std::array lightnesses{0.86, 0.7, 0.55, 0.42, 0.3, 0.18};
    static constexpr int columns = 1 + static_cast<int>(hues.size()); // the first is grey
    static constexpr int rows = static_cast<int>(lightnesses.size());

    static QColor colorAt(int index) {
        const int column = index % columns;
        const int row = index / columns;
        if (column == 0)
            return QColor::fromRgb(255 - row * 51, 255 - row * 51, 255 - row * 51);
        constexpr double saturation = 0.85;
        const auto lightness = static_cast<float>(lightnesses[static_cast<std::size_t>(row)]);
        const auto hue = static_cast<float>(hues[static_cast<std::size_t>(column - 1)]) / 360;
        return QColor::fromRgb(QColor::fromHslF(hue, static_cast<float>(saturation), lightness).rgb());
    }

    static QRect place(int index) { return {index % columns * pitch, index / columns * pitch, side, side}; }

    void choose(int index) {
        m_current = index;
        m_isExact = true;
        update();
        m_picked(colorAt(index));
    }

    std::function<void(const QColor&)> m_picked;
    int m_current = 0;
    bool m_isExact = false;
};

/// Palette, code and opacity; closes on Escape and a click beside it.
class ColorPopup final : public QFrame {
public:
    /// `isChosen` by the user, with its opacity.
    ColorPopup(const UiContext& context, BoardColor color, bool isChosen, const QString& name,
               std::function<void(BoardColor)> picked, QWidget* parent)
        : QFrame(parent, Qt::Popup)
        , m_picked(std::move(picked))
        , m_color(color)
        , m_isVeil(!isChosen && color.alpha < 128)
        , m_palette(new Palette([this](const QColor& chosen) { takeFromPalette(chosen); }, this))
        , m_code(new QLineEdit(this))
        , m_opacity(new QSlider(Qt::Horizontal, this)) {
        setAttribute(Qt::WA_DeleteOnClose);
        setProperty("kind", QStringLiteral("card"));
        setAccessibleName(name);
        m_palette->setAccessibleName(name);
        m_opacity->setRange(10, 100);
        auto* column =
            Controls::layout<QVBoxLayout>(this, {Space::m, Space::m, Space::m, Space::m}, Space::m);
        column->addWidget(m_palette);
        auto* row = new QHBoxLayout;
        row->setSpacing(Space::s);
        const auto addLabelled = [&](L10nKey text, QWidget* control) {
            QLabel* label = Controls::label(Controls::TextRole::quiet, this);
            label->setText(context.text(text));
            control->setAccessibleName(label->text());
            row->addWidget(label);
            row->addWidget(control, 1);
        };
        addLabelled(L10nKey::boardColorCode, m_code);
        row->addSpacing(Space::s);
        addLabelled(L10nKey::boardSolid, m_opacity);
        column->addLayout(row);

        show(color);
        connect(m_code, &QLineEdit::textEdited, this, [this](const QString& text) {
            const QString code = text.trimmed();
            if (const auto typed = BoardColor::parse(code.startsWith(u'#') ? code : u'#' + code)) {
                m_color = *typed;
                m_palette->setCurrent(shown(m_color));
                m_opacity->setValue(percent(m_color));
                m_picked(m_color);
            }
        });
        connect(m_code, &QLineEdit::returnPressed, this, &QWidget::close);
        connect(m_opacity, &QSlider::valueChanged, this, [this](int value) {
            if (value == percent(m_color))
                return;
            BoardColor translucent = m_color;
            translucent.alpha = static_cast<std::uint8_t>(value * 255 / 100);
            m_isVeil = false;
            take(translucent);
        });
    }

    void openUnder(const QWidget& widget) {
        adjustSize();
        const QRect screen = widget.screen()->availableGeometry();
        QPoint place = widget.mapToGlobal(QPoint(0, widget.height() + Space::xs));
        if (place.y() + height() > screen.bottom())
            place.setY(widget.mapToGlobal(QPoint(0, -Space::xs)).y() - height());
        place.setX(std::clamp(place.x(), screen.left(), std::max(screen.left(), screen.right() - width())));
        move(place);
        QFrame::show();
        m_palette->setFocus();
    }

private:
    static int percent(BoardColor color) { return (color.alpha * 100 + 127) / 255; }

    void show(BoardColor color) {
        m_color = color;
        m_palette->setCurrent(shown(color));
        m_code->setText(color.text());
        m_opacity->setValue(percent(color));
    }

    // Any colour as a template's veil would hardly be seen.
    void takeFromPalette(const QColor& chosen) {
        take(boardColor(chosen, std::exchange(m_isVeil, false) ? 255 : m_color.alpha));
        m_opacity->setValue(percent(m_color));
    }

    void take(BoardColor color) {
        m_color = color;
        m_code->setText(color.text());
        m_picked(color);
    }

    std::function<void(BoardColor)> m_picked;
    BoardColor m_color;
    bool m_isVeil; // of the template, and not changed yet
    Palette* m_palette;
    QLineEdit* m_code;
    QSlider* m_opacity;
};

}

class ColorField::Swatch final : public QToolButton {
public:
    explicit Swatch(QWidget* parent)
        : QToolButton(parent) {
        setFixedSize(44, 30);
        setCursor(Qt::PointingHandCursor);
    }

    void setColor(const QColor& color) {
        m_color = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintColor(painter, QRectF(rect()).adjusted(3.5, 3.5, -3.5, -3.5), m_color, Radius::field - 2);
        if (!hasFocus() && !underMouse())
            return;
        painter.setPen(QPen(hasFocus() ? tokens().text : tokens().quietText, 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius::field, Radius::field);
    }

private:
    QColor m_color;
};

ColorField::ColorField(const UiContext& context, L10nKey name, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_name(name)
    , m_swatch(new Swatch(this))
    , m_label(Controls::label(Controls::TextRole::body, this))
    , m_giveBack(Controls::iconButton(QStringLiteral("undo"), this)) {
    auto* row = Controls::layout<QHBoxLayout>(this, {}, Space::s);
    row->addWidget(m_swatch);
    row->addWidget(m_label, 1);
    row->addWidget(m_giveBack);
    QSizePolicy keepsSpace = m_giveBack->sizePolicy();
    keepsSpace.setRetainSizeWhenHidden(true);
    m_giveBack->setSizePolicy(keepsSpace);
    m_label->setText(m_context.text(name));
    m_label->setBuddy(m_swatch);
    setFocusProxy(m_swatch);
    Controls::setName(m_giveBack, m_context.text(L10nKey::boardMatchAgain));
    connect(m_swatch, &QToolButton::clicked, this, &ColorField::openPalette);
    connect(m_giveBack, &QToolButton::clicked, this, [this] {
        m_swatch->setFocus();
        Q_EMIT givenBack();
    });
}

void ColorField::setColor(BoardColor color, bool isChosen) {
    m_color = color;
    m_isChosen = isChosen;
    m_swatch->setColor(shown(color));
    m_giveBack->setVisible(isChosen);
    Controls::setName(m_swatch, m_context.text(m_name) + QStringLiteral(": ") + color.text());
    m_swatch->setAccessibleDescription(isChosen ? QString() : m_context.text(L10nKey::boardAutomatic));
}

void ColorField::openPalette() {
    auto* popup = new ColorPopup(
        m_context, m_color, m_isChosen, m_context.text(m_name),
        [this](BoardColor color) { Q_EMIT picked(color); }, this);
    popup->openUnder(*m_swatch);
}

}
