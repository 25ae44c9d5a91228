#include "ui/common/Dialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

namespace pointloom {

namespace {

std::optional<QString> chosen(const QString& path) {
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

}

std::optional<QString> DesktopDialogs::chooseFileToOpen(QWidget* parent, const QString& title, const QStringList& filters) {
    return chosen(QFileDialog::getOpenFileName(parent, title, {}, filters.join(QStringLiteral(";;"))));
}

std::optional<QString> DesktopDialogs::chooseFileToSave(QWidget* parent, const QString& title, const QString& proposedName,
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
    QMessageBox box(QMessageBox::NoIcon, title, QStringLiteral("<b>%1</b>").arg(title.toHtmlEscaped()), QMessageBox::Ok, parent);
    box.setInformativeText(message);
    box.exec();
}

bool DesktopDialogs::confirm(QWidget* parent, const QString& title, const QString& message, const QString& confirm,
                             const QString& cancel) {
    QMessageBox box(QMessageBox::NoIcon, title, QStringLiteral("<b>%1</b>").arg(title.toHtmlEscaped()), QMessageBox::NoButton, parent);
    box.setInformativeText(message);
    QPushButton* yes = box.addButton(confirm, QMessageBox::AcceptRole);
    QPushButton* no = box.addButton(cancel, QMessageBox::RejectRole);
    box.setDefaultButton(yes);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

}
