#include "ui/settings/ShortcutTable.h"

#include "l10n/DesktopWords.h"

#include <algorithm>
#include <QStringList>

namespace pointloom {

namespace {

// clang-format off
constexpr UiText editor{"In the editor", "Dans l'éditeur", "En el editor", "Nell'editor", "Im Editor", "I redigeraren", "No editor"};

constexpr UiText everywhere(const char* keys) {
    return {keys, keys, keys, keys, keys, keys, keys};
}

constexpr UiText project{"Project and window", "Projet et fenêtre", "Proyecto y ventana", "Progetto e finestra", "Projekt und Fenster", "Projekt och fönster", "Projeto e janela"};
constexpr ShortcutRow projectRows[] = {
    {everywhere("⌘Z"), {"Undo", "Annuler", "Deshacer", "Annulla", "Rückgängig", "Ångra", "Anular"}},
    {everywhere("⌘⇧Z, ⌘Y"), {"Redo", "Rétablir", "Rehacer", "Ripeti", "Wiederholen", "Gör om", "Refazer"}},
    {everywhere("⌘N"), {"Start over", "Recommencer", "Empezar de nuevo", "Ricomincia", "Neu beginnen", "Börja om", "Começar de novo"}},
    {everywhere("⌘O"), {"Open a video", "Ouvrir une vidéo", "Abrir un vídeo", "Apri un video", "Video öffnen", "Öppna en video", "Abrir um vídeo"}},
    {everywhere("⌘⇧O"), {"Open a project", "Ouvrir un projet", "Abrir un proyecto", "Apri un progetto", "Projekt öffnen", "Öppna ett projekt", "Abrir um projeto"}},
    {everywhere("⌘S"), {"Save the project", "Enregistrer le projet", "Guardar el proyecto", "Salva il progetto", "Projekt sichern", "Spara projektet", "Guardar o projeto"}},
    {everywhere("⌘⇧S"), {"Save it under another name", "L'enregistrer sous un autre nom", "Guardarlo con otro nombre", "Salvalo con un altro nome", "Unter anderem Namen sichern", "Spara under ett annat namn", "Guardar com outro nome"}},
    {everywhere("⌘⇧E"), {"Export the video", "Exporter la vidéo", "Exportar el vídeo", "Esporta il video", "Video exportieren", "Exportera videon", "Exportar o vídeo"}},
    {everywhere("⌘,"), {"Preferences", "Préférences", "Preferencias", "Preferenze", "Einstellungen", "Inställningar", "Preferências"}},
    {everywhere("⌘?, F1"), {"This help", "Cette aide", "Esta ayuda", "Questa guida", "Diese Hilfe", "Den här hjälpen", "Esta ajuda"}},
    {everywhere("⌘Q"), {"Quit", "Quitter", "Salir", "Esci", "Beenden", "Avsluta", "Sair"}},
};

// clang-format on

}

std::span<const ShortcutGroup> shortcutGroups() {
    static const ShortcutGroup groups[] = {{editor, editorShortcuts()}, {project, projectRows}};
    return groups;
}

// Alternatives are parted by commas, or by blanks where each is a single character.
std::vector<QString> keyLabels(const ShortcutRow& row, Language language) {
    const QString keys = forThisDesktop(t(language, row.keys), language);
    QStringList labels = keys.split(QStringLiteral(", "));
    const QStringList characters = keys.split(u' ');
    if (labels.size() == 1 &&
        std::ranges::all_of(characters, [](const QString& key) { return key.size() == 1; }))
        labels = characters;
    return {labels.begin(), labels.end()};
}

}
