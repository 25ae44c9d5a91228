#include "ui/common/Dialogs.h"

#include "l10n/Format.h"
#include "persistence/UserDefaults.h"
#include "ui/common/Preferences.h"
#include "ui/common/UiContext.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int messageWidth = 52; // average letters

// A title, a message and buttons; the last one is for Escape.
class MessageDialog : public QDialog {
public:
    struct Choice {
        QString text;
        bool isForEnter = false;
    };

    MessageDialog(QWidget* parent, const QString& title, const QString& message,
                  const std::vector<Choice>& choices)
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
        for (int index = static_cast<int>(choices.size()) - 1; index >= 0; --index)
            buttons->addWidget(makeButton(index, choices[static_cast<std::size_t>(index)]));
        m_chosen = static_cast<int>(choices.size()) - 1;

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

    /// The index of the choice made.
    int ask() {
        exec();
        return m_chosen;
    }

private:
    QPushButton* makeButton(int index, const Choice& choice) {
        using Controls::ButtonKind;
        QPushButton* button =
            Controls::button(choice.isForEnter ? ButtonKind::primary : ButtonKind::normal, this);
        button->setText(choice.text);
        connect(button, &QPushButton::clicked, this, [this, index] {
            m_chosen = index;
            accept();
        });
        if (choice.isForEnter) {
            button->setDefault(true);
            button->setFocus();
        }
        return button;
    }

    int m_chosen;
};

std::optional<QString> chosen(const QString& path) {
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

// "folder.plp" for "Project (*.plp *.PLP)"; empty for files of any ending.
std::string folderKey(const QString& filter) {
    static const QRegularExpression ending(QStringLiteral("\\*\\.(\\w+)"));
    const auto found = ending.match(filter);
    return found.hasMatch() ? "folder." + found.captured(1).toLower().toStdString() : std::string();
}

}

QString firstFolder(const AppState& session, const UserDefaults& defaults, const QString& filter) {
    QStringList candidates;
    if (const std::string key = folderKey(filter); !key.empty())
        candidates << QString::fromUtf8(Preferences::remembered(defaults, key));
    if (const auto& video = session.videoURL.value())
        candidates << QFileInfo(video->toLocalFile()).absolutePath();
    if (const auto& video = session.absentVideo.value())
        candidates << QFileInfo(*video).absolutePath();
    const auto found = std::ranges::find_if(
        candidates, [](const QString& folder) { return !folder.isEmpty() && QFileInfo(folder).isDir(); });
    return found != candidates.end() ? *found
                                     : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void rememberFolder(UserDefaults& defaults, const QString& filter, const QString& chosenFile) {
    if (const std::string key = folderKey(filter); !key.empty())
        Preferences::remember(defaults, key, QFileInfo(chosenFile).absolutePath().toUtf8());
}

std::optional<QString> DesktopDialogs::chooseFileToOpen(QWidget* parent, const QString& title,
                                                        const QStringList& filters) {
    const QString folder = firstFolder(m_session, m_defaults, filters.first());
    auto path =
        chosen(QFileDialog::getOpenFileName(parent, title, folder, filters.join(QStringLiteral(";;"))));
    if (path)
        rememberFolder(m_defaults, filters.first(), *path);
    return path;
}

QStringList DesktopDialogs::chooseFilesToOpen(QWidget* parent, const QString& title,
                                              const QStringList& filters) {
    const QString folder = firstFolder(m_session, m_defaults, filters.first());
    const QStringList paths =
        QFileDialog::getOpenFileNames(parent, title, folder, filters.join(QStringLiteral(";;")));
    if (!paths.isEmpty())
        rememberFolder(m_defaults, filters.first(), paths.first());
    return paths;
}

std::optional<QString> DesktopDialogs::chooseFileToSave(QWidget* parent, const QString& title,
                                                        const QString& proposedName,
                                                        const QStringList& filters) {
    const bool hasFolder = QFileInfo(proposedName).isAbsolute(); // its caller keeps track of it
    const QString folder = hasFolder ? QFileInfo(proposedName).absolutePath()
                                     : firstFolder(m_session, m_defaults, filters.first());
    // Not the static function: it knows no ending to add before it asks whether to replace a file.
    QFileDialog dialog(parent, title, folder, filters.join(QStringLiteral(";;")));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QFileInfo(proposedName).suffix());
    dialog.selectFile(proposedName);
    auto path = dialog.exec() == QDialog::Accepted ? chosen(dialog.selectedFiles().value(0)) : std::nullopt;
    if (path && !hasFolder)
        rememberFolder(m_defaults, filters.first(), *path);
    return path;
}

void showAlert(QWidget* parent, const QString& title, const QString& message) {
    MessageDialog(parent, title, message, {{QStringLiteral("OK"), true}}).ask();
}

void DesktopDialogs::alert(QWidget* parent, const QString& title, const QString& message) {
    showAlert(parent, title, message);
}

bool DesktopDialogs::confirm(QWidget* parent, const QString& title, const QString& message,
                             const QString& confirm, const QString& cancel) {
    return MessageDialog(parent, title, message, {{confirm}, {cancel, true}}).ask() == 0;
}

Dialogs::Answer DesktopDialogs::offerToSave(QWidget* parent, const QString& title, const QString& message,
                                            const QString& save, const QString& goOn, const QString& cancel) {
    return static_cast<Answer>(MessageDialog(parent, title, message, {{save, true}, {goOn}, {cancel}}).ask());
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
