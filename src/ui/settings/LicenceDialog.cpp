#include "ui/settings/LicenceDialog.h"

#include "l10n/Format.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Motion.h"
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

constexpr int iconSize = 24; // points

QPushButton* plainButton(Controls::ButtonKind kind, QWidget* parent) {
    QPushButton* button = Controls::button(kind, parent);
    button->setAutoDefault(false);
    return button;
}

L10nKey keyOfFault(LicenceFault fault) {
    switch (fault) {
    case LicenceFault::malformedKey:
        return L10nKey::licenceFaultMalformedKey;
    case LicenceFault::unknownKey:
        return L10nKey::licenceFaultUnknownKey;
    case LicenceFault::limitReached:
        return L10nKey::licenceFaultLimitReached;
    case LicenceFault::revoked:
        return L10nKey::licenceFaultRevoked;
    case LicenceFault::ended:
        return L10nKey::licenceFaultEnded;
    case LicenceFault::notActivated:
        return L10nKey::licenceFaultNotActivated;
    case LicenceFault::noConnection:
        return L10nKey::licenceFaultNoConnection;
    case LicenceFault::serviceTrouble:
        return L10nKey::licenceFaultServiceTrouble;
    case LicenceFault::notConfigured:
        return L10nKey::licenceFaultNotConfigured;
    case LicenceFault::invalidLicence:
        return L10nKey::licenceFaultInvalidLicence;
    case LicenceFault::otherMachine:
        return L10nKey::licenceFaultForOtherMachine;
    case LicenceFault::noMachineIdentity:
        return L10nKey::licenceFaultNoMachineIdentity;
    case LicenceFault::keychainLocked:
    case LicenceFault::keychainRefused:
        return L10nKey::licenceFaultKeychain;
    case LicenceFault::file:
        return L10nKey::licenceFaultFile;
    case LicenceFault::cancelled:
        return L10nKey::licenceFaultCancelled;
    }
    Q_UNREACHABLE();
}

bool saysMore(LicenceFault fault) {
    return fault == LicenceFault::file || fault == LicenceFault::serviceTrouble ||
           fault == LicenceFault::noConnection;
}

QString stateText(const LicenceStatus& status, Language language) {
    const QString holder = status.record ? status.record->holder : QString();
    switch (status.state) {
    case LicenceState::unlicensed:
        return t(language, L10nKey::licenceStateUnlicensed);
    case LicenceState::unread:
        return t(language, L10nKey::licenceStateUnread) + QStringLiteral(" (") + status.fault + u')';
    case LicenceState::expired:
        return format(t(language, L10nKey::licenceStateExpired), holder);
    case LicenceState::otherMachine:
        return format(t(language, L10nKey::licenceStateOtherMachine), holder);
    case LicenceState::invalid:
        return t(language, L10nKey::licenceFaultInvalidLicence);
    case LicenceState::licensed:
        break;
    }
    QString words = format(t(language, L10nKey::licenceStateLicensed), holder);
    if (const auto& end = status.record->expires) {
        words += u' ' + format(t(language, L10nKey::licenceStateLicensedUntil),
                               localeOf(language).toString(end->toLocalTime().date(), QLocale::ShortFormat));
    }
    return words;
}

// One or two sentences on the state of this machine.
QString statusText(const LicenceStatus& status, Language language) {
    QString words = stateText(status, language);
    if (status.isClockBehind)
        words += u' ' + t(language, L10nKey::licenceStateClockBehind);
    return words;
}

// The sentence of a fault; `detail`, the English message of the error, follows where it says more.
QString faultText(LicenceFault fault, const QString& detail, Language language) {
    if (language == Language::english)
        return detail;
    const QString words = t(language, keyOfFault(fault));
    return saysMore(fault) ? words + QStringLiteral(" (") + detail + u')' : words;
}

}

LicenceDialog::LicenceDialog(const UiContext& context, LicenceManager& manager, QWidget* parent)
    : TitledDialog(context, 66, parent)
    , m_operations(manager, [this] { follow(); }) {
    body().addWidget(makeState());
    body().addWidget(m_entry = makeKeyEntry());
    body().addWidget(m_outcome = paragraph(this));
    body().addWidget(m_offline = makeOffline());
    body().addStretch();
    inEachLanguage([this] { putTextsIn(); });
    bindings().watch(this->context().state.isLicensed, [this] { follow(); });
    connect(&Theme::shared(), &Theme::changed, this, &LicenceDialog::follow);
    m_entryField->setFocus();
    m_operations.readAgain();
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
    auto* layout = Controls::layout<QVBoxLayout>(card, {Space::l, Space::l, Space::l, Space::l}, Space::s);
    m_entryTitle = Controls::label(Controls::TextRole::strong, card);
    m_entryField = new QLineEdit(card);
    m_entryField->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_entryField->setPlaceholderText(QStringLiteral("PL-XXXXX-XXXXX-XXXXX-XXXXX")); // not translated
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
    bar->setVisible(!Motion::shared().isReduced()); // the words say the same
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
    connect(m_cancel, &QPushButton::clicked, this, [this] { m_operations.cancel(); });
    return card;
}

QWidget* LicenceDialog::makeOffline() {
    QFrame* card = Controls::card(this);
    auto* layout = Controls::layout<QVBoxLayout>(card, {Space::l, Space::l, Space::l, Space::l}, Space::s);
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
    setTitle(in.text(L10nKey::licenceTitle));
    m_deactivate->setText(in.text(L10nKey::licenceDeactivate));
    m_entryTitle->setText(in.text(L10nKey::licenceKeyTitle));
    m_entryField->setAccessibleName(in.text(L10nKey::licenceKeyTitle));
    m_activate->setText(in.text(L10nKey::licenceActivate));
    m_cancel->setText(in.text(L10nKey::cancel));
    m_offlineTitle->setText(in.text(L10nKey::licenceOfflineTitle));
    m_offlineText->setText(in.text(L10nKey::licenceOffline));
    m_writeRequest->setText(in.text(L10nKey::licenceWrite));
    m_importFile->setText(in.text(L10nKey::licenceImport));
    follow();
}

// Shows what the sheet says; called for every change of it.
void LicenceDialog::follow() {
    const LicenceStatus status = m_operations.status();
    const bool isWorking = m_operations.isWorking();
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
    m_progressText->setText(context().text(asks ? L10nKey::licenceAsking : L10nKey::licenceWorking));
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
    m_entryHint->setText(context().text(isSlip   ? L10nKey::licenceKeySlipped
                                        : isFine ? L10nKey::licenceKeyHint
                                                 : L10nKey::licenceKeyMalformed));
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
    m_state->setText(statusText(status, context().state.language));
    const QString key = m_operations.maskedKey();
    m_key->setText(format(context().text(L10nKey::licenceKey), key));
    m_key->setVisible(!key.isEmpty());
    m_deactivate->setVisible(m_operations.canDeactivate() || (m_operations.isWorking() && status.record));
}

void LicenceDialog::showOutcome() {
    const bool isTold = m_operations.hasOutcome();
    m_outcome->setVisible(isTold);
    if (!isTold)
        return;
    const Language language = context().state.language;
    if (const auto& error = m_operations.error()) {
        Controls::setRole(m_outcome, error->fault() == LicenceFault::cancelled ? Controls::TextRole::quiet
                                                                               : Controls::TextRole::danger);
        m_outcome->setText(faultText(error->fault(), error->message(), language));
        return;
    }
    Controls::setRole(m_outcome, Controls::TextRole::success);
    m_outcome->setText(context().text(m_operation == Operation::deactivate     ? L10nKey::licenceGivenBack
                                      : m_operation == Operation::writeRequest ? L10nKey::licenceWritten
                                                                               : L10nKey::licenceActivated));
}

bool LicenceDialog::hasWholeKey() const {
    return LicenceKey::isValid(m_entryField->text());
}

void LicenceDialog::activate() {
    if (m_operations.isWorking() || !hasWholeKey())
        return;
    m_entryField->setText(LicenceKey::parse(m_entryField->text()).text());
    m_operation = Operation::activate;
    m_operations.activate(m_entryField->text());
}

void LicenceDialog::deactivate() {
    if (!context().dialogs.confirm(this, context().text(L10nKey::licenceDeactivateTitle),
                                   context().text(L10nKey::licenceDeactivateMessage),
                                   context().text(L10nKey::licenceDeactivateConfirm),
                                   context().text(L10nKey::cancel)))
        return;
    m_operation = Operation::deactivate;
    m_operations.deactivate();
}

void LicenceDialog::writeRequest() {
    const auto path = context().dialogs.chooseFileToSave(
        this, context().text(L10nKey::licenceWrite), QStringLiteral("pointloom-licence-request.json"),
        {context().text(L10nKey::licenceLicenceFiles) + QStringLiteral(" (*.json)")});
    if (!path)
        return;
    m_operation = Operation::writeRequest;
    m_operations.writeRequest(m_entryField->text(), *path);
}

void LicenceDialog::importFile() {
    const auto path = context().dialogs.chooseFileToOpen(
        this, context().text(L10nKey::licenceImport),
        {context().text(L10nKey::licenceLicenceFiles) + QStringLiteral(" (*.json)"),
         QStringLiteral("* (*)")});
    if (!path)
        return;
    m_operation = Operation::importFile;
    m_operations.importFile(*path);
}

// Enter in the field activates the key; the default button, which closes the dialog, would get it too.
void LicenceDialog::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && focusWidget() == m_entryField && !m_entryField->text().isEmpty())
        return;
    TitledDialog::keyPressEvent(event);
}

void LicenceDialog::reject() {
    if (!m_operations.isWorking()) {
        TitledDialog::reject();
        return;
    }
    m_isClosing = true;
    m_operations.cancel();
}

}
