// Preferences: each choice takes effect and is kept at once.
#pragma once

#include "ui/common/TitledDialog.h"

class QCheckBox;
class QComboBox;
class QPushButton;

namespace pointloom {

class PreferencesDialog : public TitledDialog {
    Q_OBJECT

public:
    PreferencesDialog(const UiContext& context, QWidget* parent);

Q_SIGNALS:
    void hardwareDecodingChosen(bool isOn);
    void quickPicturesChosen(bool isOn);

private:
    QWidget* makeAppearance();
    QWidget* makeSwitches();
    QWidget* makeKeptSegments();
    void showKeptBytes();
    void addSwitch(QVBoxLayout& layout, QCheckBox* box, std::string_view key, L10nKey title, L10nKey detail);
    void chooseLanguage(int index);
    void chooseTheme(int index);
    void chooseKeptLimit(int index);
    void emptyKept();
    void keep(std::string_view key, bool value);
    void showFault(const QString& message);

    QComboBox* m_language;
    QComboBox* m_theme;
    QPushButton* m_keys;
    QComboBox* m_keptLimit;
    QLabel* m_keptBytes;
    QPushButton* m_empty;
    QLabel* m_fault;
};

}
