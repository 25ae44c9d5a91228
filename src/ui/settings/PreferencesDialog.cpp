#include "ui/settings/PreferencesDialog.h"

#include "files/FileDescriptor.h"
#include "l10n/Format.h"
#include "persistence/KeptSegments.h"
#include "persistence/UserDefaults.h"
#include "ui/common/Preferences.h"
#include "ui/settings/KeysDialog.h"
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

struct ThemeName {
    ThemeChoice choice;
    L10nKey name;
};
constexpr ThemeName themeNames[] = {{ThemeChoice::dark, L10nKey::preferencesDark},
                                    {ThemeChoice::light, L10nKey::preferencesLight},
                                    {ThemeChoice::desktop, L10nKey::preferencesAsDesktop}};

}

PreferencesDialog::PreferencesDialog(const UiContext& context, QWidget* parent)
    : TitledDialog(context, 60, parent)
    , m_language(new QComboBox(this))
    , m_theme(new QComboBox(this))
    , m_keys(Controls::button(Controls::ButtonKind::normal, this))
    , m_keptLimit(new QComboBox(this))
    , m_keptBytes(Controls::label(Controls::TextRole::quiet, this))
    , m_empty(Controls::button(Controls::ButtonKind::normal, this))
    , m_fault(paragraph(this)) {
    Controls::setRole(m_fault, Controls::TextRole::danger);
    m_fault->hide();
    body().addWidget(makeAppearance());
    body().addWidget(makeSwitches());
    body().addWidget(makeKeptSegments());
    body().addWidget(m_fault);
    body().addStretch();
    inEachLanguage([this] { setTitle(this->context().text(L10nKey::preferencesTitle)); });
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

    QLabel* keysLabel = Controls::label(Controls::TextRole::body, card);
    grid->addWidget(keysLabel, 2, 0);
    grid->addWidget(m_keys, 2, 1);
    connect(m_keys, &QPushButton::clicked, this, [this] { (new KeysDialog(context(), this))->open(); });

    inEachLanguage([this, languageLabel, themeLabel, keysLabel] {
        keysLabel->setText(context().text(L10nKey::helpShortcutsTitle));
        m_keys->setText(context().text(L10nKey::keysChange));
        languageLabel->setText(context().text(L10nKey::preferencesLanguage));
        m_language->setAccessibleName(context().text(L10nKey::preferencesLanguage));
        m_language->setCurrentIndex(static_cast<int>(context().state.language.value()));
        themeLabel->setText(context().text(L10nKey::preferencesAppearance));
        m_theme->setAccessibleName(context().text(L10nKey::preferencesAppearance));
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
    addSwitch(*layout, new QCheckBox(card), Preferences::hardwareDecodingKey, L10nKey::preferencesDecoding,
              L10nKey::preferencesDecodingDetail);
    layout->addSpacing(Space::m);
    addSwitch(*layout, new QCheckBox(card), Preferences::quickPicturesKey, L10nKey::preferencesQuickPictures,
              L10nKey::preferencesQuickPicturesDetail);
    layout->addSpacing(Space::m);
    addSwitch(*layout, new QCheckBox(card), Preferences::namesOfMatchKey, L10nKey::preferencesNames,
              L10nKey::preferencesNamesDetail);
    layout->addSpacing(Space::m);
    addSwitch(*layout, new QCheckBox(card), Preferences::crashReportsKey, L10nKey::preferencesCrashReports,
              L10nKey::preferencesCrashReportsDetail);
    return card;
}

QWidget* PreferencesDialog::makeKeptSegments() {
    QFrame* card = Controls::card(this);
    auto* grid = new QGridLayout(card);
    grid->setContentsMargins(Space::l, Space::l, Space::l, Space::l);
    grid->setHorizontalSpacing(Space::l);
    grid->setVerticalSpacing(Space::m);
    grid->setColumnStretch(0, 1);
    QLabel* name = Controls::label(Controls::TextRole::body, card);
    name->setBuddy(m_keptLimit);
    m_keptLimit->setObjectName(QStringLiteral("keptLimit"));
    const int chosen = KeptSegments::limit(context().defaults);
    for (const int gigabytes : {0, 5, 10, 20, 50, 100, 200}) {
        if (m_keptLimit->findData(chosen) < 0 && gigabytes > chosen)
            m_keptLimit->addItem(QString(), chosen); // of the settings' own
        m_keptLimit->addItem(QString(), gigabytes);
    }
    if (m_keptLimit->findData(chosen) < 0)
        m_keptLimit->addItem(QString(), chosen);
    m_keptLimit->setCurrentIndex(m_keptLimit->findData(chosen));
    m_empty->setObjectName(QStringLiteral("emptyKept"));
    QLabel* explanation = paragraph(card, true);
    grid->addWidget(name, 0, 0);
    grid->addWidget(m_keptLimit, 0, 1);
    grid->addWidget(explanation, 1, 0, 1, 2);
    grid->addWidget(m_keptBytes, 2, 0);
    grid->addWidget(m_empty, 2, 1);
    inEachLanguage([this, name, explanation] {
        name->setText(context().text(L10nKey::preferencesKept));
        m_keptLimit->setAccessibleName(name->text());
        explanation->setText(context().text(L10nKey::preferencesKeptDetail));
        m_keptLimit->setAccessibleDescription(explanation->text());
        m_empty->setText(context().text(L10nKey::preferencesKeptEmpty));
        const QLocale locale = localeOf(context().state.language);
        for (int i = 0; i < m_keptLimit->count(); ++i)
            m_keptLimit->setItemText(i, locale.toString(m_keptLimit->itemData(i).toInt()) +
                                            QStringLiteral(" GB"));
        showKeptBytes();
    });
    connect(m_keptLimit, &QComboBox::activated, this, &PreferencesDialog::chooseKeptLimit);
    connect(m_empty, &QPushButton::clicked, this, &PreferencesDialog::emptyKept);
    return card;
}

void PreferencesDialog::showKeptBytes() {
    const qint64 bytes = KeptSegments::cache(context().defaults).bytes();
    const QString size =
        localeOf(context().state.language).formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
    m_keptBytes->setText(format(context().text(L10nKey::preferencesKeptUsed), size));
    m_empty->setEnabled(bytes > 0);
}

void PreferencesDialog::addSwitch(QVBoxLayout& layout, QCheckBox* box, std::string_view key, L10nKey title,
                                  L10nKey detail) {
    box->setObjectName(QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())));
    box->setChecked(Preferences::isSet(context().defaults, key));
    QLabel* explanation = paragraph(this, true);
    explanation->setIndent(0);
    layout.addWidget(box);
    layout.addWidget(explanation);
    inEachLanguage([this, box, explanation, title, detail] {
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

// Takes effect at once: what is beyond the limit is removed.
void PreferencesDialog::chooseKeptLimit(int index) {
    try {
        KeptSegments::setLimit(context().defaults, m_keptLimit->itemData(index).toInt());
    } catch (const FileError& error) {
        showFault(QString::fromUtf8(error.what()));
    }
    showKeptBytes();
}

void PreferencesDialog::emptyKept() {
    KeptSegments::cache(context().defaults).clear();
    m_keptLimit->setFocus(); // the button is disabled next
    showKeptBytes();
}

void PreferencesDialog::keep(std::string_view key, bool value) {
    if (key == Preferences::hardwareDecodingKey)
        Q_EMIT hardwareDecodingChosen(value);
    if (key == Preferences::quickPicturesKey)
        Q_EMIT quickPicturesChosen(value);
    try {
        context().defaults.setBoolean(key, value);
    } catch (const FileError& error) {
        showFault(QString::fromUtf8(error.what()));
    }
}

void PreferencesDialog::showFault(const QString& message) {
    m_fault->setText(format(context().text(L10nKey::preferencesNotKept), message));
    m_fault->show();
}

}
