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

// clang-format off
constexpr UiText title{"About Pointloom", "À propos de Pointloom", "Acerca de Pointloom", "Informazioni su Pointloom", "Über Pointloom", "Om Pointloom", "Acerca do Pointloom"};
constexpr UiText versionText{"Version %@", "Version %@", "Versión %@", "Versione %@", "Version %@", "Version %@", "Versão %@"};
constexpr UiText licenceTitle{"Free software", "Logiciel libre", "Software libre", "Software libero", "Freie Software", "Fri programvara", "Software livre"};
constexpr UiText licenceText{
    "Pointloom is under the GNU General Public License, version 3 or later: you may use it, change it and pass it on. It comes without any warranty.",
    "Pointloom est sous licence publique générale GNU, version 3 ou ultérieure : tu peux l'utiliser, le modifier et le transmettre. Il est fourni sans aucune garantie.",
    "Pointloom está bajo la Licencia Pública General de GNU, versión 3 o posterior: puedes usarlo, modificarlo y compartirlo. Se ofrece sin ninguna garantía.",
    "Pointloom è sotto la GNU General Public License, versione 3 o successiva: puoi usarlo, modificarlo e distribuirlo. Viene fornito senza alcuna garanzia.",
    "Pointloom steht unter der GNU General Public License, Version 3 oder später: Du darfst es benutzen, ändern und weitergeben. Es gibt keinerlei Gewährleistung.",
    "Pointloom omfattas av GNU General Public License, version 3 eller senare: du får använda, ändra och dela det. Det kommer utan någon garanti.",
    "O Pointloom está sob a Licença Pública Geral GNU, versão 3 ou posterior: podes usá-lo, alterá-lo e partilhá-lo. É fornecido sem qualquer garantia."};
constexpr UiText librariesTitle{"Libraries", "Bibliothèques", "Bibliotecas", "Librerie", "Bibliotheken", "Bibliotek", "Bibliotecas"};

constexpr UiText windows{"Windows and drawing", "Fenêtres et dessin", "Ventanas y dibujo", "Finestre e disegno", "Fenster und Zeichnen", "Fönster och ritning", "Janelas e desenho"};
constexpr UiText videos{"Reading and writing videos", "Lecture et écriture des vidéos", "Lectura y escritura de vídeos", "Lettura e scrittura dei video", "Videos lesen und schreiben", "Läsa och skriva video", "Leitura e escrita de vídeos"};
constexpr UiText playback{"Playback in the editor", "Lecture dans l'éditeur", "Reproducción en el editor", "Riproduzione nell'editor", "Abspielen im Editor", "Uppspelning i redigeraren", "Reprodução no editor"};
constexpr UiText documents{"Documents and settings", "Documents et réglages", "Documentos y ajustes", "Documenti e impostazioni", "Dokumente und Einstellungen", "Dokument och inställningar", "Documentos e definições"};
constexpr UiText licences{"Verifying licences", "Vérification des licences", "Comprobación de licencias", "Verifica delle licenze", "Lizenzen prüfen", "Kontroll av licenser", "Verificação de licenças"};
constexpr UiText keychain{"The desktop's keychain", "Trousseau du bureau", "Llavero del escritorio", "Portachiavi del desktop", "Schlüsselbund des Desktops", "Skrivbordets nyckelring", "Porta-chaves do sistema"};
// clang-format on

struct Library {
    const char* name;
    QString (*version)(); // of the one in use; null where it tells none
    const UiText& use;
    const char* licence; // SPDX
};

QString qtVersion() {
    return QString::fromUtf8(qVersion());
}

constexpr Library libraries[] = {
    {"Qt", qtVersion, windows, "LGPL-3.0"},
    {"FFmpeg", media::ffmpegVersion, videos, "GPL-2.0-or-later"},
    {"mpv", nullptr, playback, "GPL-2.0-or-later"},
    {"nlohmann/json", nullptr, documents, "MIT"},
    {"libsodium", nullptr, licences, "ISC"},
    {"QtKeychain", nullptr, keychain, "BSD-2-Clause"},
};

constexpr int iconSide = 64; // points

}

AboutDialog::AboutDialog(const UiContext& context, QWidget* parent)
    : TitledDialog(context, 76, parent) {
    body().addWidget(makeProgram());
    body().addWidget(makeLicence());
    body().addWidget(makeLibraries());
    body().addStretch();
    inEachLanguage([this] { setTitle(this->context().text(title)); });
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
        version->setText(format(context().text(versionText), QCoreApplication::applicationVersion()));
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
        heading->setText(context().text(licenceTitle));
        text->setText(context().text(licenceText));
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
    inEachLanguage([this, heading] { heading->setText(context().text(librariesTitle)); });
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
