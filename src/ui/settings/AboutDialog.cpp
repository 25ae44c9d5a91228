#include "ui/settings/AboutDialog.h"

#include "l10n/Format.h"
#include "media/EncoderProbe.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

namespace pointloom {

namespace {

struct Library {
    const char* name;
    QString (*version)(); // of the one in use; null where it tells none
    L10nKey use;
    const char* licence; // SPDX
};

QString qtVersion() {
    return QString::fromUtf8(qVersion());
}

constexpr Library libraries[] = {
    {"Qt", qtVersion, L10nKey::aboutLibraryWindows, "LGPL-3.0"},
    {"FFmpeg", media::ffmpegVersion, L10nKey::aboutLibraryVideos, "GPL-2.0-or-later"},
    {"mpv", nullptr, L10nKey::aboutLibraryPlayback, "GPL-2.0-or-later"},
    {"nlohmann/json", nullptr, L10nKey::aboutLibraryDocuments, "MIT"},
    {"libsodium", nullptr, L10nKey::aboutLibraryLicences, "ISC"},
    {"QtKeychain", nullptr, L10nKey::aboutLibraryKeychain, "BSD-2-Clause"},
};

constexpr int iconSide = 64; // points

}

AboutDialog::AboutDialog(const UiContext& context, QWidget* parent)
    : TitledDialog(context, 76, parent) {
    body().addWidget(makeProgram());
    body().addWidget(makeLicence());
    body().addWidget(makeLibraries());
    body().addStretch();
    inEachLanguage([this] { setTitle(this->context().text(L10nKey::commandAbout)); });
}

QWidget* AboutDialog::makeProgram() {
    auto* program = new QWidget(this);
    auto* row = Controls::layout<QHBoxLayout>(program, {0, 0, 0, 0}, Space::l);
    auto* icon = new QLabel(program);
    icon->setPixmap(QApplication::windowIcon().pixmap({iconSide, iconSide}, devicePixelRatioF()));
    QLabel* version = Controls::label(Controls::TextRole::section, program);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QLabel* purpose = paragraph(program);
    auto* words = new QVBoxLayout;
    words->setSpacing(Space::xs);
    words->addWidget(version);
    words->addWidget(purpose);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addLayout(words, 1);
    inEachLanguage([this, version, purpose] {
        version->setText(
            format(context().text(L10nKey::aboutVersion), QCoreApplication::applicationVersion()));
        purpose->setText(context().text(L10nKey::helpIntro));
    });
    return program;
}

QWidget* AboutDialog::makeLicence() {
    QFrame* card = Controls::card(this);
    auto* lines = Controls::layout<QVBoxLayout>(card, {Space::l, Space::m, Space::l, Space::m}, Space::xs);
    QLabel* heading = Controls::label(Controls::TextRole::strong, card);
    QLabel* text = paragraph(card);
    lines->addWidget(heading);
    lines->addWidget(text);
    inEachLanguage([this, heading, text] {
        heading->setText(context().text(L10nKey::aboutLicenceTitle));
        text->setText(context().text(L10nKey::aboutLicence));
    });
    return card;
}

QWidget* AboutDialog::makeLibraries() {
    QFrame* card = Controls::card(this);
    auto* grid = new QGridLayout(card);
    grid->setContentsMargins(Space::l, Space::m, Space::l, Space::m);
    grid->setHorizontalSpacing(Space::l);
    grid->setVerticalSpacing(Space::xs);
    grid->setColumnStretch(1, 1);
    QLabel* heading = Controls::label(Controls::TextRole::strong, card);
    grid->addWidget(heading, 0, 0, 1, 3);
    inEachLanguage([this, heading] { heading->setText(context().text(L10nKey::aboutLibrariesTitle)); });
    for (const Library& library : libraries) {
        QString name = QString::fromUtf8(library.name);
        if (library.version)
            name += u' ' + library.version();
        QLabel* nameLabel = Controls::label(Controls::TextRole::body, card);
        nameLabel->setText(name);
        nameLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
        QLabel* use = paragraph(card, true);
        QLabel* licence = Controls::label(Controls::TextRole::quiet, card);
        licence->setText(QString::fromUtf8(library.licence));
        const int row = grid->rowCount();
        grid->addWidget(nameLabel, row, 0);
        grid->addWidget(use, row, 1);
        grid->addWidget(licence, row, 2);
        inEachLanguage([this, use, &library] { use->setText(context().text(library.use)); });
    }
    return card;
}

}
