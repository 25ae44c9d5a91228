#include "ui/export/WatermarkBox.h"

#include "render/PictureFile.h"
#include "ui/export/ExportWords.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QFileInfo>
#include <QHBoxLayout>

namespace pointloom {

namespace {

constexpr QSize thumbnailSize(44, 44);

}

WatermarkBox::WatermarkBox(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_thumbnail(new QLabel(this))
    , m_name(Controls::label(Controls::TextRole::body, this))
    , m_fault(Controls::label(Controls::TextRole::warning, this))
    , m_choose(Controls::button(Controls::ButtonKind::normal, this))
    , m_remove(Controls::iconButton(QStringLiteral("trash"), this))
    , m_corners(new CornerPicker(this)) {
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
    connect(m_corners, &CornerPicker::picked, this, [this](WatermarkCorner corner) {
        if (m_context.state.watermarkCorner.value() == corner)
            return;
        m_context.state.watermarkCorner = corner;
        m_context.state.save();
    });
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
    for (const auto& [corner, name] : RawValues<WatermarkCorner>::table)
        m_corners->setCornerName(corner, m_context.text(ExportWords::nameOf(corner)));
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
