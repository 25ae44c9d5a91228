#include "ui/export/WatermarkBox.h"

#include "export/ExportSettings.h"
#include "render/PictureFile.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <functional>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

namespace pointloom {

namespace {

constexpr QSize thumbnailSize(44, 44);

// In the order of the corners.
constexpr std::array cornerNames{L10nKey::exportTopLeft, L10nKey::exportTopRight, L10nKey::exportBottomLeft,
                                 L10nKey::exportBottomRight};
static_assert(cornerNames.size() == allCases<WatermarkCorner>().size());

constexpr QSize largestFrame(112, 64);

// One quarter of the frame, with the mark in its outer corner.
class CornerButton final : public QRadioButton {
public:
    CornerButton(WatermarkCorner corner, QWidget* parent)
        : QRadioButton(parent)
        , m_corner(corner) {
        setCursor(Qt::PointingHandCursor);
        setAttribute(Qt::WA_Hover);
        setObjectName(QString::fromUtf8(rawValue(corner)));
    }

protected:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent*) override {
        const ColorTokens& colors = tokens();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QSizeF markSize(16, 11);
        QRectF mark(QPointF(isLeft(m_corner) ? Space::xs + 2 : width() - Space::xs - 2 - markSize.width(),
                            isTop(m_corner) ? Space::xs + 2 : height() - Space::xs - 2 - markSize.height()),
                    markSize);
        if (isChecked() || underMouse()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(isChecked() ? colors.accent : colors.line);
            painter.drawRoundedRect(mark, 2, 2);
        } else {
            painter.setPen(QPen(colors.quietText, 1));
            painter.drawRoundedRect(mark.adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
        }
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(colors.accent, 2));
            painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius::field - 2,
                                    Radius::field - 2);
        }
    }

private:
    WatermarkCorner m_corner;
};

}

// Picks the corner of the watermark, on a small frame in the shape of the export: four radio buttons, one a
// corner; arrow keys go from one to the next.
class CornerPicker : public QWidget {
public:
    CornerPicker(QWidget* parent, std::function<void(WatermarkCorner)> onPicked);

    void setCorner(WatermarkCorner corner);
    void setCornerName(WatermarkCorner corner, const QString& name);
    void setShape(QSizeF shape);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QRectF frame() const;
    void placeButtons();

    QButtonGroup m_buttons; // numbers are the corners
    QSizeF m_shape{16, 9};
};

CornerPicker::CornerPicker(QWidget* parent, std::function<void(WatermarkCorner)> onPicked)
    : QWidget(parent) {
    for (const WatermarkCorner corner : allCases<WatermarkCorner>())
        m_buttons.addButton(new CornerButton(corner, this), static_cast<int>(corner)); // owned as a child
    connect(&m_buttons, &QButtonGroup::idToggled, this, [pick = std::move(onPicked)](int id, bool isChecked) {
        if (isChecked)
            pick(static_cast<WatermarkCorner>(id));
    });
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void CornerPicker::setCorner(WatermarkCorner corner) {
    m_buttons.button(static_cast<int>(corner))->setChecked(true);
}

void CornerPicker::setCornerName(WatermarkCorner corner, const QString& name) {
    QAbstractButton* button = m_buttons.button(static_cast<int>(corner));
    button->setAccessibleName(name);
    button->setToolTip(name);
}

void CornerPicker::setShape(QSizeF shape) {
    m_shape = shape.isEmpty() ? QSizeF(16, 9) : shape;
    placeButtons();
    update();
}

QSize CornerPicker::sizeHint() const {
    return largestFrame;
}

QRectF CornerPicker::frame() const {
    QRectF result(QPointF(0, 0), m_shape.scaled(QSizeF(largestFrame), Qt::KeepAspectRatio));
    result.moveCenter(QRectF(rect()).center());
    return result;
}

void CornerPicker::placeButtons() {
    const QRect whole = frame().toRect();
    const QSize quarter(whole.width() / 2, whole.height() / 2);
    for (const WatermarkCorner corner : allCases<WatermarkCorner>()) {
        const QPoint place(isLeft(corner) ? whole.left() : whole.right() + 1 - quarter.width(),
                           isTop(corner) ? whole.top() : whole.bottom() + 1 - quarter.height());
        m_buttons.button(static_cast<int>(corner))->setGeometry(QRect(place, quarter));
    }
}

void CornerPicker::resizeEvent(QResizeEvent*) {
    placeButtons();
}

void CornerPicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens().line);
    painter.setBrush(tokens().raised);
    painter.drawRoundedRect(frame().adjusted(0.5, 0.5, -0.5, -0.5), Radius::field - 2, Radius::field - 2);
}

WatermarkBox::WatermarkBox(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_thumbnail(new QLabel(this))
    , m_name(Controls::label(Controls::TextRole::body, this))
    , m_fault(Controls::label(Controls::TextRole::warning, this))
    , m_choose(Controls::button(Controls::ButtonKind::normal, this))
    , m_remove(Controls::iconButton(QStringLiteral("trash"), this))
    , m_corners(new CornerPicker(this, [this](WatermarkCorner corner) {
        if (m_context.state.watermarkCorner.value() == corner)
            return;
        m_context.state.watermarkCorner = corner;
        m_context.state.save();
    })) {
    build();
    bind();
}

void WatermarkBox::build() {
    m_thumbnail->setFixedSize(thumbnailSize);
    m_thumbnail->setAlignment(Qt::AlignCenter);
    m_choose->setObjectName(QStringLiteral("chooseWatermark"));
    m_choose->setAutoDefault(false);
    m_remove->setObjectName(QStringLiteral("removeWatermark"));
    m_corners->setObjectName(QStringLiteral("corners"));
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_fault->setWordWrap(true);
    m_fault->hide();

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Space::xs);
    buttons->addWidget(m_choose);
    buttons->addWidget(m_remove);
    buttons->addStretch();
    auto* picture = new QHBoxLayout;
    picture->setSpacing(Space::s);
    picture->addWidget(m_thumbnail);
    picture->addWidget(m_name, 1);
    auto* left = new QVBoxLayout;
    left->setSpacing(Space::s);
    left->addLayout(picture);
    left->addLayout(buttons);
    auto* row = new QHBoxLayout;
    row->setSpacing(Space::m);
    row->addLayout(left, 1);
    row->addWidget(m_corners, 0, Qt::AlignTop);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(Space::s);
    whole->addLayout(row);
    whole->addWidget(m_fault);
}

void WatermarkBox::bind() {
    AppState& state = m_context.state;
    connect(m_choose, &QPushButton::clicked, this, &WatermarkBox::choose);
    connect(m_remove, &QToolButton::clicked, this, [this] {
        m_context.state.watermarkURL = std::nullopt;
        m_context.state.save();
        m_choose->setFocus();
    });
    connect(&Theme::shared(), &Theme::changed, this, &WatermarkBox::showPicture);
    m_bindings.watch(state.watermarkURL, [this] { load(); });
    m_bindings.watch(state.watermarkCorner,
                     [this] { m_corners->setCorner(m_context.state.watermarkCorner); });
    m_bindings.watchAll([this] { showWords(); }, state.language, state.watermarkURL);
}

void WatermarkBox::setShape(QSizeF shape) {
    m_corners->setShape(shape);
}

void WatermarkBox::showWords() {
    const auto& url = m_context.state.watermarkURL.value();
    m_name->setText(url ? url->fileName() : m_context.text(L10nKey::exportWatermarkNone));
    m_name->setToolTip(url ? url->toLocalFile() : QString());
    m_choose->setText(m_context.text(url ? L10nKey::exportChangeDestination : L10nKey::exportChoosePicture));
    m_choose->setAccessibleName(
        m_context.text(url ? L10nKey::exportChangePicture : L10nKey::exportChooseWatermark));
    m_remove->setToolTip(m_context.text(L10nKey::exportRemovePicture));
    m_remove->setAccessibleName(m_context.text(L10nKey::exportRemovePicture));
    m_remove->setVisible(url.has_value());
    m_corners->setVisible(url.has_value());
    m_fault->setText(m_context.text(L10nKey::exportWatermarkUnreadable));
    for (const WatermarkCorner corner : allCases<WatermarkCorner>())
        m_corners->setCornerName(corner, m_context.text(cornerNames[static_cast<std::size_t>(corner)]));
}

void WatermarkBox::choose() {
    const QString filter =
        m_context.text(L10nKey::pictureFiles) + QStringLiteral(" (*.png *.jpg *.jpeg *.PNG *.JPG *.JPEG)");
    const auto path =
        m_context.dialogs.chooseFileToOpen(this, m_context.text(L10nKey::exportChooseWatermark), {filter});
    if (!path)
        return;
    m_context.state.watermarkURL = QUrl::fromLocalFile(*path);
    m_context.state.save();
}

void WatermarkBox::load() {
    m_picture.reset();
    m_loading.cancel();
    showPicture();
    const auto& url = m_context.state.watermarkURL.value();
    if (!url)
        return;
    const QSize size = thumbnailSize * devicePixelRatioF();
    const auto read = [path = url->toLocalFile(), size] {
        const QImage picture = loadPictureFile(path);
        return picture.isNull() ? picture
                                : picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    };
    m_loading.start(read, [this](const QImage& picture) {
        m_picture = picture;
        showPicture();
    });
}

void WatermarkBox::showPicture() {
    m_fault->setVisible(m_picture && m_picture->isNull());
    QPixmap shown = QPixmap::fromImage(m_picture.value_or(QImage()));
    shown.setDevicePixelRatio(devicePixelRatioF());
    if (shown.isNull())
        shown = Icons::pixmap(QStringLiteral("image"), thumbnailSize.width() / 2, tokens().quietText,
                              devicePixelRatioF());
    m_thumbnail->setPixmap(shown);
}

}
