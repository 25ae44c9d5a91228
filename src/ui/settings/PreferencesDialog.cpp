#include "ui/settings/PreferencesDialog.h"

#include "files/FileError.h"
#include "l10n/Format.h"
#include "persistence/UserDefaults.h"
#include "ui/common/Preferences.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace pointloom {

namespace {

// clang-format off
constexpr UiText title{"Preferences", "Préférences", "Preferencias", "Preferenze", "Einstellungen", "Inställningar", "Preferências"};
constexpr UiText language{"Language", "Langue", "Idioma", "Lingua", "Sprache", "Språk", "Idioma"};
constexpr UiText appearance{"Appearance", "Apparence", "Apariencia", "Aspetto", "Darstellung", "Utseende", "Aspeto"};
constexpr UiText dark{"Dark", "Sombre", "Oscuro", "Scuro", "Dunkel", "Mörkt", "Escuro"};
constexpr UiText light{"Light", "Clair", "Claro", "Chiaro", "Hell", "Ljust", "Claro"};
constexpr UiText asDesktop{"As the desktop", "Comme le bureau", "Como el escritorio", "Come il desktop", "Wie der Desktop", "Som skrivbordet", "Como o ambiente de trabalho"};
constexpr UiText decoding{"Hardware decoding", "Décodage matériel", "Decodificación por hardware", "Decodifica hardware", "Hardware-Dekodierung", "Hårdvaruavkodning", "Descodificação por hardware"};
constexpr UiText decodingDetail{
    "Lets the graphics card play the clip. Turn it off if the picture stutters or shows faults.",
    "La carte graphique lit la vidéo. Désactive-le si l'image saccade ou présente des défauts.",
    "La tarjeta gráfica reproduce el vídeo. Desactívalo si la imagen va a saltos o tiene fallos.",
    "La scheda grafica riproduce il video. Disattivala se l'immagine va a scatti o ha difetti.",
    "Die Grafikkarte spielt das Video ab. Schalte es aus, wenn das Bild ruckelt oder Fehler zeigt.",
    "Grafikkortet spelar upp videon. Stäng av det om bilden hackar eller visar fel.",
    "A placa gráfica reproduz o vídeo. Desliga-a se a imagem saltar ou mostrar defeitos."};
constexpr UiText crashReports{"Anonymous crash reports", "Rapports de plantage anonymes", "Informes de fallos anónimos", "Segnalazioni anonime dei crash", "Anonyme Absturzberichte", "Anonyma kraschrapporter", "Relatórios de falhas anónimos"};
constexpr UiText crashReportsDetail{
    "Sent at the next start after a crash. No personal data is included.",
    "Envoyés au démarrage qui suit un plantage. Aucune donnée personnelle n'est incluse.",
    "Se envían al iniciar después de un fallo. No incluyen datos personales.",
    "Inviate al primo avvio dopo un crash. Non contengono dati personali.",
    "Werden beim nächsten Start nach einem Absturz gesendet. Persönliche Daten sind nicht dabei.",
    "Skickas vid nästa start efter en krasch. Inga personuppgifter ingår.",
    "Enviados no arranque seguinte a uma falha. Não incluem dados pessoais."};
constexpr UiText notKept{
    "This could not be kept: %@", "Impossible d'enregistrer ce choix : %@", "No se pudo guardar: %@",
    "Impossibile salvare la scelta: %@", "Das konnte nicht gesichert werden: %@", "Valet kunde inte sparas: %@",
    "Não foi possível guardar a escolha: %@"};
// clang-format on

struct ThemeName {
    ThemeChoice choice;
    const UiText& name;
};
constexpr ThemeName themeNames[] = {
    {ThemeChoice::dark, dark}, {ThemeChoice::light, light}, {ThemeChoice::desktop, asDesktop}};

}

PreferencesDialog::PreferencesDialog(const UiContext& context, QWidget* parent)
    : TitledDialog(context, 60, parent)
    , m_language(new QComboBox(this))
    , m_theme(new QComboBox(this))
    , m_fault(paragraph(this)) {
    Controls::setRole(m_fault, Controls::TextRole::danger);
    m_fault->hide();
    body().addWidget(makeAppearance());
    body().addWidget(makeSwitches());
    body().addWidget(m_fault);
    body().addStretch();
    inEachLanguage([this] { setTitle(this->context().text(title)); });
    m_language->setFocus();
}

QWidget* PreferencesDialog::makeAppearance() {
    QFrame* card = Controls::card(this);
    auto* grid = new QGridLayout(card);
    grid->setContentsMargins(Space::l, Space::l, Space::l, Space::l);
    grid->setHorizontalSpacing(Space::l);
    grid->setVerticalSpacing(Space::m);
    grid->setColumnStretch(1, 1);

    QLabel* languageLabel = Controls::label(Controls::TextRole::body, card);
    languageLabel->setBuddy(m_language);
    for (const Language choice : allCases<Language>())
        m_language->addItem(flag(choice) + QStringLiteral("  ") + displayName(choice));
    grid->addWidget(languageLabel, 0, 0);
    grid->addWidget(m_language, 0, 1);

    QLabel* themeLabel = Controls::label(Controls::TextRole::body, card);
    themeLabel->setBuddy(m_theme);
    for ([[maybe_unused]] const ThemeName& row : themeNames)
        m_theme->addItem(QString());
    m_theme->setCurrentIndex(static_cast<int>(Preferences::theme(context().defaults)));
    grid->addWidget(themeLabel, 1, 0);
    grid->addWidget(m_theme, 1, 1);

    inEachLanguage([this, languageLabel, themeLabel] {
        languageLabel->setText(context().text(language));
        m_language->setAccessibleName(context().text(language));
        m_language->setCurrentIndex(static_cast<int>(context().state.language.value()));
        themeLabel->setText(context().text(appearance));
        m_theme->setAccessibleName(context().text(appearance));
        for (int i = 0; i < m_theme->count(); ++i)
            m_theme->setItemText(i, context().text(themeNames[i].name));
    });
    connect(m_language, &QComboBox::activated, this, &PreferencesDialog::chooseLanguage);
    connect(m_theme, &QComboBox::activated, this, &PreferencesDialog::chooseTheme);
    return card;
}

QWidget* PreferencesDialog::makeSwitches() {
    QFrame* card = Controls::card(this);
    auto* layout = Controls::layout<QVBoxLayout>(card, {Space::l, Space::l, Space::l, Space::l}, Space::xs);
    addSwitch(*layout, new QCheckBox(card), Preferences::hardwareDecodingKey, decoding, decodingDetail);
    layout->addSpacing(Space::m);
    addSwitch(*layout, new QCheckBox(card), Preferences::crashReportsKey, crashReports, crashReportsDetail);
    return card;
}

void PreferencesDialog::addSwitch(QVBoxLayout& layout, QCheckBox* box, std::string_view key,
                                  const UiText& title, const UiText& detail) {
    box->setObjectName(QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())));
    box->setChecked(Preferences::isSet(context().defaults, key));
    QLabel* explanation = paragraph(this, true);
    explanation->setIndent(0);
    layout.addWidget(box);
    layout.addWidget(explanation);
    inEachLanguage([this, box, explanation, &title, &detail] {
        box->setText(context().text(title));
        explanation->setText(context().text(detail));
        box->setAccessibleDescription(explanation->text());
    });
    connect(box, &QCheckBox::clicked, this, [this, key](bool isOn) { keep(key, isOn); });
}

void PreferencesDialog::chooseLanguage(int index) {
    try {
        Preferences::chooseLanguage(context(), allCases<Language>()[static_cast<std::size_t>(index)]);
    } catch (const FileError& error) {
        showFault(QString::fromUtf8(error.what()));
    }
}

void PreferencesDialog::chooseTheme(int index) {
    const ThemeChoice choice = themeNames[index].choice;
    Theme::shared().apply(*qApp, choice);
    try {
        const std::string_view raw = rawValue(choice);
        context().defaults.setData(Preferences::themeKey,
                                   QByteArray(raw.data(), static_cast<qsizetype>(raw.size())));
    } catch (const FileError& error) {
        showFault(QString::fromUtf8(error.what()));
    }
}

void PreferencesDialog::keep(std::string_view key, bool value) {
    if (key == Preferences::hardwareDecodingKey)
        Q_EMIT hardwareDecodingChosen(value);
    try {
        context().defaults.setBoolean(key, value);
    } catch (const FileError& error) {
        showFault(QString::fromUtf8(error.what()));
    }
}

void PreferencesDialog::showFault(const QString& message) {
    m_fault->setText(format(context().text(notKept), message));
    m_fault->show();
}

}
