#include "ui/settings/LicenceDialog.h"

#include "l10n/Format.h"
#include "ui/settings/LicenceWords.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace pointloom {

namespace {

// clang-format off
constexpr UiText title{"Licence", "Licence", "Licencia", "Licenza", "Lizenz", "Licens", "Licença"};
constexpr UiText keyOf{"Key: %@", "Clé : %@", "Clave: %@", "Chiave: %@", "Schlüssel: %@", "Nyckel: %@", "Chave: %@"};
constexpr UiText keyTitle{"Licence key", "Clé de licence", "Clave de licencia", "Chiave di licenza", "Lizenzschlüssel", "Licensnyckel", "Chave de licença"};
constexpr UiText keyHint{
    "Type or paste the key from your receipt. Case, blanks and hyphens do not matter.",
    "Saisis ou colle la clé de ton reçu. Majuscules, espaces et tirets sont sans importance.",
    "Escribe o pega la clave de tu recibo. Mayúsculas, espacios y guiones dan igual.",
    "Scrivi o incolla la chiave della ricevuta. Maiuscole, spazi e trattini non contano.",
    "Gib den Schlüssel aus deiner Quittung ein oder füge ihn ein. Groß- und Kleinschreibung, Leerzeichen und Striche sind egal.",
    "Skriv eller klistra in nyckeln från ditt kvitto. Skiftläge, blanksteg och bindestreck spelar ingen roll.",
    "Escreve ou cola a chave do teu recibo. Maiúsculas, espaços e hífenes não importam."};
constexpr UiText malformed{
    "This is not a complete key yet. A key looks like PL‑XXXXX‑XXXXX‑XXXXX‑XXXXX.",
    "La clé n'est pas encore complète. Une clé ressemble à PL‑XXXXX‑XXXXX‑XXXXX‑XXXXX.",
    "La clave aún no está completa. Una clave es como PL‑XXXXX‑XXXXX‑XXXXX‑XXXXX.",
    "La chiave non è ancora completa. Una chiave ha la forma PL‑XXXXX‑XXXXX‑XXXXX‑XXXXX.",
    "Der Schlüssel ist noch nicht vollständig. Er sieht aus wie PL‑XXXXX‑XXXXX‑XXXXX‑XXXXX.",
    "Nyckeln är inte fullständig än. Den ser ut som PL‑XXXXX‑XXXXX‑XXXXX‑XXXXX.",
    "A chave ainda não está completa. Uma chave é como PL‑XXXXX‑XXXXX‑XXXXX‑XXXXX."};
constexpr UiText slipped{
    "There is a slip in this key. Compare it with your receipt.",
    "Il y a une erreur dans cette clé. Compare-la avec ton reçu.",
    "Hay un error en esta clave. Compárala con tu recibo.",
    "C'è un errore in questa chiave. Confrontala con la ricevuta.",
    "In diesem Schlüssel ist ein Tippfehler. Vergleiche ihn mit deiner Quittung.",
    "Det är ett fel i nyckeln. Jämför den med ditt kvitto.",
    "Há um erro nesta chave. Compara-a com o teu recibo."};
constexpr UiText activateText{"Activate", "Activer", "Activar", "Attiva", "Aktivieren", "Aktivera", "Ativar"};
constexpr UiText deactivateText{"Deactivate…", "Désactiver…", "Desactivar…", "Disattiva…", "Deaktivieren…", "Inaktivera…", "Desativar…"};
constexpr UiText deactivateTitle{
    "Give the licence back?", "Rendre la licence ?", "¿Devolver la licencia?", "Restituire la licenza?",
    "Lizenz zurückgeben?", "Lämna tillbaka licensen?", "Devolver a licença?"};
constexpr UiText deactivateMessage{
    "It can then be used on another machine. Videos exported here will carry the licence watermark.",
    "Elle pourra servir sur une autre machine. Les vidéos exportées ici porteront le filigrane.",
    "Podrás usarla en otro equipo. Los vídeos exportados aquí llevarán la marca de agua.",
    "Potrai usarla su un altro computer. I video esportati qui avranno la filigrana.",
    "Sie kann dann auf einem anderen Rechner verwendet werden. Hier exportierte Videos tragen das Wasserzeichen.",
    "Den kan sedan användas på en annan dator. Videor som exporteras här får vattenstämpeln.",
    "Pode depois ser usada noutra máquina. Os vídeos exportados aqui terão a marca de água."};
constexpr UiText deactivateConfirm{"Deactivate", "Désactiver", "Desactivar", "Disattiva", "Deaktivieren", "Inaktivera", "Desativar"};
constexpr UiText offlineTitle{
    "Without a network", "Sans réseau", "Sin red", "Senza rete", "Ohne Netzwerk", "Utan nätverk", "Sem rede"};
constexpr UiText offlineText{
    "Enter the key, write a request file and hand it to the licence service on another computer. Then import the licence file that it answers with.",
    "Saisis la clé, écris un fichier de demande et remets-le au service de licences depuis un autre ordinateur. Importe ensuite le fichier de licence reçu en réponse.",
    "Escribe la clave, guarda un archivo de solicitud y entrégalo al servicio de licencias desde otro equipo. Después importa el archivo de licencia que te devuelva.",
    "Scrivi la chiave, salva un file di richiesta e consegnalo al servizio licenze da un altro computer. Poi importa il file di licenza ricevuto in risposta.",
    "Gib den Schlüssel ein, schreibe eine Anfragedatei und übergib sie auf einem anderen Rechner dem Lizenzdienst. Importiere dann die Lizenzdatei, mit der er antwortet.",
    "Skriv in nyckeln, spara en begäran som fil och lämna den till licenstjänsten från en annan dator. Importera sedan licensfilen som du får till svar.",
    "Escreve a chave, guarda um ficheiro de pedido e entrega-o ao serviço de licenças noutro computador. Depois importa o ficheiro de licença recebido em resposta."};
constexpr UiText writeText{"Write Request…", "Écrire la demande…", "Guardar solicitud…", "Salva richiesta…", "Anfrage schreiben…", "Spara begäran…", "Guardar pedido…"};
constexpr UiText importText{"Import Licence File…", "Importer la licence…", "Importar licencia…", "Importa licenza…", "Lizenzdatei importieren…", "Importera licensfil…", "Importar licença…"};
constexpr UiText licenceFiles{"Licence files", "Fichiers de licence", "Archivos de licencia", "File di licenza", "Lizenzdateien", "Licensfiler", "Ficheiros de licença"};

constexpr UiText asking{"Asking the licence service…", "Contact du service de licences…", "Consultando el servicio de licencias…", "Contatto il servizio licenze…", "Der Lizenzdienst wird gefragt…", "Frågar licenstjänsten…", "A contactar o serviço de licenças…"};
constexpr UiText working{"One moment…", "Un instant…", "Un momento…", "Un attimo…", "Einen Moment…", "Ett ögonblick…", "Um momento…"};
constexpr UiText activated{
    "Thank you. This machine is now licensed.", "Merci. Cette machine a maintenant une licence.", "Gracias. Este equipo ya tiene licencia.",
    "Grazie. Questo computer ora ha una licenza.", "Danke. Dieser Rechner ist jetzt lizenziert.", "Tack. Den här datorn har nu en licens.",
    "Obrigado. Esta máquina tem agora uma licença."};
constexpr UiText givenBack{
    "The licence was given back and can be used on another machine.", "La licence a été rendue et peut servir sur une autre machine.",
    "La licencia se devolvió y puede usarse en otro equipo.", "La licenza è stata restituita e può essere usata su un altro computer.",
    "Die Lizenz wurde zurückgegeben und kann auf einem anderen Rechner verwendet werden.", "Licensen är tillbakalämnad och kan användas på en annan dator.",
    "A licença foi devolvida e pode ser usada noutra máquina."};
constexpr UiText written{
    "The request was written.", "La demande a été écrite.", "La solicitud se guardó.", "La richiesta è stata salvata.",
    "Die Anfrage wurde geschrieben.", "Begäran har sparats.", "O pedido foi guardado."};
// clang-format on

constexpr int iconSize = 24; // points

QVBoxLayout* cardLayout(QFrame* card) {
    auto* layout = Controls::layout<QVBoxLayout>(card, {Space::l, Space::l, Space::l, Space::l}, Space::s);
    return layout;
}

QPushButton* plainButton(Controls::ButtonKind kind, QWidget* parent) {
    QPushButton* button = Controls::button(kind, parent);
    button->setAutoDefault(false);
    return button;
}

}

LicenceDialog::LicenceDialog(const UiContext& context, LicenceManager& manager, QWidget* parent)
    : TitledDialog(context, 66, parent)
    , m_sheet(manager, [this] { follow(); }) {
    body().addWidget(makeState());
    body().addWidget(m_entry = makeKeyEntry());
    body().addWidget(m_outcome = paragraph(this));
    body().addWidget(m_offline = makeOffline());
    body().addStretch();
    inEachLanguage([this] { putTextsIn(); });
    bindings().watch(this->context().state.isLicensed, [this] { follow(); });
    connect(&Theme::shared(), &Theme::changed, this, &LicenceDialog::follow);
    m_entryField->setFocus();
    m_sheet.readAgain();
}

QWidget* LicenceDialog::makeState() {
    QFrame* card = Controls::card(this);
    auto* row = Controls::layout<QHBoxLayout>(card, {Space::l, Space::l, Space::l, Space::l}, Space::m);
    m_stateIcon = new QLabel(card);
    m_state = paragraph(card);
    m_key = Controls::label(Controls::TextRole::quiet, card);
    m_deactivate = plainButton(Controls::ButtonKind::danger, card);
    auto* words = new QVBoxLayout;
    words->setSpacing(Space::xs);
    words->addWidget(m_state);
    words->addWidget(m_key);
    row->addWidget(m_stateIcon, 0, Qt::AlignTop);
    row->addLayout(words, 1);
    row->addWidget(m_deactivate, 0, Qt::AlignVCenter);
    connect(m_deactivate, &QPushButton::clicked, this, &LicenceDialog::deactivate);
    return card;
}

QWidget* LicenceDialog::makeKeyEntry() {
    QFrame* card = Controls::card(this);
    QVBoxLayout* layout = cardLayout(card);
    m_entryTitle = Controls::label(Controls::TextRole::strong, card);
    m_entryField = new QLineEdit(card);
    m_entryField->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_entryField->setPlaceholderText(QStringLiteral("PL-XXXXX-XXXXX-XXXXX-XXXXX"));
    m_entryField->setClearButtonEnabled(true);
    m_entryTitle->setBuddy(m_entryField);
    m_entryHint = paragraph(card, true);
    m_activate = plainButton(Controls::ButtonKind::primary, card);
    auto* row = new QHBoxLayout;
    row->setSpacing(Space::s);
    row->addWidget(m_entryField, 1);
    row->addWidget(m_activate);

    m_progressRow = new QWidget(card);
    auto* progress = Controls::layout<QHBoxLayout>(m_progressRow, {0, Space::xs, 0, 0}, Space::m);
    m_progressText = Controls::label(Controls::TextRole::quiet, m_progressRow);
    auto* bar = new QProgressBar(m_progressRow);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    m_cancel = plainButton(Controls::ButtonKind::normal, m_progressRow);
    progress->addWidget(m_progressText);
    progress->addWidget(bar, 1);
    progress->addWidget(m_cancel);

    layout->addWidget(m_entryTitle);
    layout->addLayout(row);
    layout->addWidget(m_entryHint);
    layout->addWidget(m_progressRow);
    connect(m_entryField, &QLineEdit::textChanged, this, &LicenceDialog::follow);
    connect(m_entryField, &QLineEdit::returnPressed, this, &LicenceDialog::activate);
    connect(m_activate, &QPushButton::clicked, this, &LicenceDialog::activate);
    connect(m_cancel, &QPushButton::clicked, this, [this] { m_sheet.cancel(); });
    return card;
}

QWidget* LicenceDialog::makeOffline() {
    QFrame* card = Controls::card(this);
    QVBoxLayout* layout = cardLayout(card);
    m_offlineTitle = Controls::label(Controls::TextRole::strong, card);
    m_offlineText = paragraph(card, true);
    m_writeRequest = plainButton(Controls::ButtonKind::normal, card);
    m_importFile = plainButton(Controls::ButtonKind::normal, card);
    auto* row = new QHBoxLayout;
    row->setSpacing(Space::s);
    row->addWidget(m_writeRequest);
    row->addWidget(m_importFile);
    row->addStretch();
    layout->addWidget(m_offlineTitle);
    layout->addWidget(m_offlineText);
    layout->addLayout(row);
    connect(m_writeRequest, &QPushButton::clicked, this, &LicenceDialog::writeRequest);
    connect(m_importFile, &QPushButton::clicked, this, &LicenceDialog::importFile);
    return card;
}

void LicenceDialog::putTextsIn() {
    const UiContext& in = context();
    setTitle(in.text(title));
    m_deactivate->setText(in.text(deactivateText));
    m_entryTitle->setText(in.text(keyTitle));
    m_entryField->setAccessibleName(in.text(keyTitle));
    m_activate->setText(in.text(activateText));
    m_cancel->setText(in.text(L10nKey::cancel));
    m_offlineTitle->setText(in.text(offlineTitle));
    m_offlineText->setText(in.text(offlineText));
    m_writeRequest->setText(in.text(writeText));
    m_importFile->setText(in.text(importText));
    follow();
}

// Shows what the sheet says; called for every change of it.
void LicenceDialog::follow() {
    const LicenceStatus status = m_sheet.status();
    const bool isWorking = m_sheet.isWorking();
    context().state.isLicensed = status.isLicensed();
    showState(status);
    const bool wasLicensed = m_offline->isHidden();
    m_entry->setVisible(!status.isLicensed() || isWorking);
    m_offline->setVisible(!status.isLicensed());
    m_entryField->setReadOnly(isWorking);
    m_activate->setEnabled(!isWorking && hasWholeKey());
    m_writeRequest->setEnabled(!isWorking && hasWholeKey());
    m_importFile->setEnabled(!isWorking);
    m_deactivate->setEnabled(!isWorking);
    showHint();
    m_progressRow->setVisible(isWorking);
    const bool asks = m_operation == Operation::activate || m_operation == Operation::deactivate;
    m_progressText->setText(context().text(asks ? asking : working));
    showOutcome();
    if (m_offline->isHidden() != wasLicensed)
        QTimer::singleShot(0, this, [this] { shrinkToBody(); });
    if (m_isClosing && !isWorking)
        TitledDialog::reject();
}

void LicenceDialog::showHint() {
    const QString key = m_entryField->text();
    const bool isFine = key.trimmed().isEmpty() || hasWholeKey();
    const bool isSlip = !isFine && LicenceKey::isWhole(key);
    Controls::setRole(m_entryHint, isSlip ? Controls::TextRole::danger : Controls::TextRole::quiet);
    m_entryHint->setText(context().text(isSlip ? slipped : isFine ? keyHint : malformed));
}

void LicenceDialog::showState(const LicenceStatus& status) {
    const bool isGood = status.isLicensed();
    const bool isBad = !isGood && status.state != LicenceState::unlicensed;
    const ColorTokens& colors = tokens();
    m_stateIcon->setPixmap(Icons::pixmap(isGood  ? QStringLiteral("check")
                                         : isBad ? QStringLiteral("warning")
                                                 : QStringLiteral("key"),
                                         iconSize,
                                         isGood  ? colors.success
                                         : isBad ? colors.warning
                                                 : colors.quietText,
                                         devicePixelRatioF()));
    m_state->setText(LicenceWords::ofStatus(status, context().state.language));
    const QString key = m_sheet.maskedKey();
    m_key->setText(format(context().text(keyOf), key));
    m_key->setVisible(!key.isEmpty());
    m_deactivate->setVisible(m_sheet.canDeactivate() || (m_sheet.isWorking() && status.record));
}

void LicenceDialog::showOutcome() {
    const bool isTold = !m_sheet.isWorking() && !m_sheet.message().isEmpty();
    m_outcome->setVisible(isTold);
    if (!isTold)
        return;
    const Language language = context().state.language;
    if (const auto fault = m_sheet.fault()) {
        Controls::setRole(m_outcome, *fault == LicenceFault::cancelled ? Controls::TextRole::quiet
                                                                       : Controls::TextRole::danger);
        m_outcome->setText(LicenceWords::ofFault(*fault, m_sheet.message(), language));
        return;
    }
    Controls::setRole(m_outcome, Controls::TextRole::success);
    m_outcome->setText(context().text(m_operation == Operation::deactivate     ? givenBack
                                      : m_operation == Operation::writeRequest ? written
                                                                               : activated));
}

bool LicenceDialog::hasWholeKey() const {
    return !LicenceSheet::problemWithKey(m_entryField->text());
}

void LicenceDialog::activate() {
    if (m_sheet.isWorking() || !hasWholeKey())
        return;
    m_entryField->setText(LicenceKey::parse(m_entryField->text()).text());
    m_operation = Operation::activate;
    m_sheet.activate(m_entryField->text());
}

void LicenceDialog::deactivate() {
    if (!context().dialogs.confirm(this, context().text(deactivateTitle), context().text(deactivateMessage),
                                   context().text(deactivateConfirm), context().text(L10nKey::cancel)))
        return;
    m_operation = Operation::deactivate;
    m_sheet.deactivate();
}

void LicenceDialog::writeRequest() {
    const auto path = context().dialogs.chooseFileToSave(
        this, context().text(writeText), QStringLiteral("pointloom-licence-request.json"),
        {context().text(licenceFiles) + QStringLiteral(" (*.json)")});
    if (!path)
        return;
    m_operation = Operation::writeRequest;
    m_sheet.writeRequest(m_entryField->text(), *path);
}

void LicenceDialog::importFile() {
    const auto path = context().dialogs.chooseFileToOpen(
        this, context().text(importText),
        {context().text(licenceFiles) + QStringLiteral(" (*.json)"), QStringLiteral("* (*)")});
    if (!path)
        return;
    m_operation = Operation::importFile;
    m_sheet.importFile(*path);
}

// Enter in the field activates the key; the default button, which closes the dialog, would get it too.
void LicenceDialog::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && focusWidget() == m_entryField && !m_entryField->text().isEmpty())
        return;
    TitledDialog::keyPressEvent(event);
}

void LicenceDialog::reject() {
    if (!m_sheet.isWorking()) {
        TitledDialog::reject();
        return;
    }
    m_isClosing = true;
    m_sheet.cancel();
}

}
