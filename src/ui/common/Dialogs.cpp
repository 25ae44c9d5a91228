#include "ui/common/Dialogs.h"

#include "l10n/Format.h"
#include "ui/common/UiContext.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int messageWidth = 52; // average letters

// A title, a message, and one or two buttons; Escape is the second.
class MessageDialog : public QDialog {
public:
    MessageDialog(QWidget* parent, const QString& title, const QString& message, const QString& accept,
                  const std::optional<QString>& refuse)
        : QDialog(parent) {
        setWindowTitle(title);
        QLabel* heading = Controls::label(Controls::TextRole::section, this);
        heading->setText(title);
        heading->setWordWrap(true);
        QLabel* text = Controls::label(Controls::TextRole::body, this);
        text->setTextFormat(Qt::PlainText);
        text->setText(message);
        text->setWordWrap(true);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        auto* buttons = new QHBoxLayout;
        buttons->setSpacing(Space::s);
        buttons->addStretch();
        if (refuse)
            buttons->addWidget(button(Controls::ButtonKind::normal, *refuse, &QDialog::reject));
        QPushButton* accepting = button(Controls::ButtonKind::primary, accept, &QDialog::accept);
        buttons->addWidget(accepting);
        accepting->setDefault(true);
        accepting->setFocus();

        auto* layout =
            Controls::layout<QVBoxLayout>(this, {Space::xl, Space::xl, Space::xl, Space::l}, Space::m);
        layout->addWidget(heading);
        layout->addWidget(text, 1);
        layout->addSpacing(Space::s);
        layout->addLayout(buttons);
        const int width =
            std::max(fontMetrics().averageCharWidth() * messageWidth, buttons->sizeHint().width()) +
            2 * Space::xl;
        setFixedSize(width, layout->heightForWidth(width));
        placeOverWindow(*this);
    }

private:
    QPushButton* button(Controls::ButtonKind kind, const QString& words, void (QDialog::*pressed)()) {
        QPushButton* result = Controls::button(kind, this);
        result->setText(words);
        connect(result, &QPushButton::clicked, this, pressed);
        return result;
    }
};

std::optional<QString> chosen(const QString& path) {
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

}

std::optional<QString> DesktopDialogs::chooseFileToOpen(QWidget* parent, const QString& title,
                                                        const QStringList& filters) {
    return chosen(QFileDialog::getOpenFileName(parent, title, {}, filters.join(QStringLiteral(";;"))));
}

std::optional<QString> DesktopDialogs::chooseFileToSave(QWidget* parent, const QString& title,
                                                        const QString& proposedName,
                                                        const QStringList& filters) {
    // Not the static function: it knows no ending to add before it asks whether to replace a file.
    QFileDialog dialog(parent, title, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
                       filters.join(QStringLiteral(";;")));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QFileInfo(proposedName).suffix());
    dialog.selectFile(proposedName);
    return dialog.exec() == QDialog::Accepted ? chosen(dialog.selectedFiles().value(0)) : std::nullopt;
}

void DesktopDialogs::alert(QWidget* parent, const QString& title, const QString& message) {
    MessageDialog(parent, title, message, QStringLiteral("OK"), std::nullopt).exec();
}

bool DesktopDialogs::confirm(QWidget* parent, const QString& title, const QString& message,
                             const QString& confirm, const QString& cancel) {
    return MessageDialog(parent, title, message, confirm, cancel).exec() == QDialog::Accepted;
}

std::optional<QString> chooseFileToSave(const UiContext& context, QWidget* parent, const QString& title,
                                        const QString& proposedName, const QString& filter,
                                        const QString& ending) {
    const auto chosen = context.dialogs.chooseFileToSave(parent, title, proposedName, {filter});
    if (!chosen || chosen->endsWith(ending, Qt::CaseInsensitive))
        return chosen;
    const QString path = *chosen + ending;
    if (QFileInfo::exists(path) &&
        !context.dialogs.confirm(
            parent, context.text(L10nKey::saveReplaceTitle),
            format(context.text(L10nKey::saveReplaceMessage), QFileInfo(path).fileName()),
            context.text(L10nKey::replaceConfirm), context.text(L10nKey::cancel)))
        return std::nullopt;
    return path;
}

QSize availableSize(const QWidget& window) {
    constexpr QSize frame(16, 48); // of the usual desktops, with the bar of the title
    return window.screen()->availableSize() - frame;
}

void placeOverWindow(QWidget& dialog) {
    if (!dialog.parentWidget())
        return;
    const QWidget& window = *dialog.parentWidget()->window();
    const QRect outside = window.frameGeometry();
    const QSize frame = outside.size() - window.size(); // the dialog gets the same
    QRect place({}, dialog.size() + frame);
    place.moveCenter(outside.center());
    const QRect screen = window.screen()->availableGeometry();
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    place.moveLeft(std::max(place.left(), screen.left()));
    place.moveTop(std::max(place.top(), screen.top()));
    dialog.move(place.topLeft());
}

}
