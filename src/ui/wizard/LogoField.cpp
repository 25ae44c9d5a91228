#include "ui/wizard/LogoField.h"

#include "l10n/Format.h"
#include "render/PictureFile.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int previewSize = 64;      // points
constexpr int largestPicture = 1024; // pixels a side; a scoreboard shows far less

QImage readLogo(const QString& path) {
    const QImage picture = loadPictureFile(path);
    if (std::max(picture.width(), picture.height()) <= largestPicture)
        return picture;
    return picture.scaled(largestPicture, largestPicture, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}

LogoField::LogoField(const UiContext& context, QWidget* parent)
    : QFrame(parent)
    , m_context(context)
    , m_preview(new QLabel(this))
    , m_title(Controls::label(Controls::TextRole::body, this))
    , m_name(Controls::label(Controls::TextRole::quiet, this))
    , m_hint(Controls::label(Controls::TextRole::quiet, this))
    , m_choose(Controls::button(Controls::ButtonKind::normal, this))
    , m_remove(Controls::button(Controls::ButtonKind::plain, this)) {
    setProperty("kind", QStringLiteral("card"));
    m_preview->setFixedSize(previewSize, previewSize);
    m_preview->setAlignment(Qt::AlignCenter);
    for (QLabel* label : {m_title, m_name, m_hint})
        label->setWordWrap(true);

    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    words->addStretch(1);
    words->addWidget(m_title);
    words->addWidget(m_name);
    words->addWidget(m_hint);
    words->addStretch(1);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Space::l, Space::m, Space::l, Space::m);
    row->setSpacing(Space::m);
    row->addWidget(m_preview);
    row->addLayout(words, 1);
    row->addWidget(m_remove);
    row->addWidget(m_choose);

    connect(m_choose, &QPushButton::clicked, this, &LogoField::choose);
    connect(m_remove, &QPushButton::clicked, this, &LogoField::remove);
    connect(&Theme::shared(), &Theme::changed, this, [this] { setPicture(m_picture); });
    setPicture({});
    m_bindings.watch(m_context.state.language, [this] { showTexts(); });
}

void LogoField::choose() {
    const auto path = m_context.dialogs.chooseFileToOpen(
        window(), m_context.text(L10nKey::chooseLogo),
        {m_context.text(L10nKey::pictureFiles) + QStringLiteral(" (*.png *.jpg *.jpeg *.PNG *.JPG *.JPEG)")});
    if (path)
        read(QUrl::fromLocalFile(*path), true);
}

void LogoField::setLogo(const std::optional<QUrl>& url) {
    if (url == m_url)
        return;
    m_reading.cancel();
    m_url = url;
    m_unreadable.clear();
    setPicture({});
    showTexts();
    if (url)
        read(*url, false);
}

// A new file that cannot be read leaves the logo as it was.
void LogoField::read(const QUrl& url, bool isNew) {
    m_reading.start([path = url.toLocalFile()] { return readLogo(path); },
                    [this, url, isNew](const QImage& picture) { take(url, picture, isNew); });
}

void LogoField::take(const QUrl& url, const QImage& picture, bool isNew) {
    m_unreadable = picture.isNull() ? url.fileName() : QString();
    if (!picture.isNull()) {
        m_url = url;
        setPicture(picture);
        if (isNew)
            Q_EMIT logoPicked();
    }
    showTexts();
}

void LogoField::remove() {
    setLogo(std::nullopt);
    m_choose->setFocus();
    Q_EMIT logoPicked();
}

void LogoField::setPicture(const QImage& picture) {
    m_picture = picture;
    if (picture.isNull()) {
        constexpr int iconSize = 32;
        m_preview->setPixmap(
            Icons::pixmap(QStringLiteral("image"), iconSize, tokens().quietText, devicePixelRatioF()));
    } else {
        const double ratio = devicePixelRatioF();
        QPixmap shown = QPixmap::fromImage(picture.scaled(QSize(previewSize, previewSize) * ratio,
                                                          Qt::KeepAspectRatio, Qt::SmoothTransformation));
        shown.setDevicePixelRatio(ratio);
        m_preview->setPixmap(shown);
    }
    Q_EMIT pictureChanged();
}

void LogoField::showTexts() {
    const bool hasLogo = m_url.has_value();
    m_title->setText(m_context.text(L10nKey::logoOptional));
    m_name->setText(hasLogo ? m_url->fileName() : m_context.text(L10nKey::noLogo));
    m_hint->setText(m_unreadable.isEmpty() ? m_context.text(L10nKey::logoScoreboardHint)
                                           : format(m_context.text(L10nKey::logoUnreadable), m_unreadable));
    m_hint->setProperty("role", m_unreadable.isEmpty() ? QStringLiteral("quiet") : QStringLiteral("danger"));
    m_hint->style()->unpolish(m_hint);
    m_hint->style()->polish(m_hint);
    m_choose->setText(m_context.text(hasLogo ? L10nKey::changeLogo : L10nKey::chooseLogo));
    m_remove->setText(m_context.text(L10nKey::removeLogo));
    m_remove->setVisible(hasLogo);
    m_preview->setAccessibleName(m_name->text());
}

}
