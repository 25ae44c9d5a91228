#include "ui/settings/ShortcutTable.h"

#include "l10n/DesktopWords.h"

#include <QStringList>

namespace pointloom {

namespace {

// clang-format off
constexpr UiText spaceKey{"Space", "Espace", "Espacio", "Spazio", "Leertaste", "Blanksteg", "Espaço"};
constexpr UiText deleteKey{"Delete", "Suppr", "Supr", "Canc", "Entf", "Delete", "Delete"};

constexpr UiText playback{"Playback", "Lecture", "Reproducción", "Riproduzione", "Wiedergabe", "Uppspelning", "Reprodução"};
constexpr Shortcut playbackKeys[] = {
    {"Space", {"Play or pause", "Lire ou mettre en pause", "Reproducir o pausar", "Riproduci o metti in pausa", "Abspielen oder anhalten", "Spela upp eller pausa", "Reproduzir ou pausar"}},
    {"← →", {"One frame back or on", "Une image en arrière ou en avant", "Un fotograma atrás o adelante", "Un fotogramma indietro o avanti", "Ein Bild zurück oder vor", "En bild bakåt eller framåt", "Um fotograma atrás ou à frente"}},
    {"J K L", {"Back, pause, play; again for faster", "Reculer, pause, lire ; encore pour accélérer", "Atrás, pausa, reproducir; otra vez para ir más rápido", "Indietro, pausa, riproduci; ancora per accelerare", "Zurück, anhalten, abspielen; nochmals für schneller", "Bakåt, pausa, spela; igen för snabbare", "Atrás, pausar, reproduzir; outra vez para acelerar"}},
};

constexpr UiText scoring{"Markers and score", "Marqueurs et score", "Marcadores y puntuación", "Marker e punteggio", "Marker und Spielstand", "Markörer och ställning", "Marcadores e pontuação"};
constexpr Shortcut scoringKeys[] = {
    {"M +", {"Marker here, score unchanged", "Marqueur ici, score inchangé", "Marcador aquí, sin cambiar la puntuación", "Marker qui, punteggio invariato", "Marker hier, Spielstand unverändert", "Markör här, samma ställning", "Marcador aqui, pontuação igual"}},
    {"1 2", {"Marker here, next value for team 1 or 2", "Marqueur ici, valeur suivante pour l'équipe 1 ou 2", "Marcador aquí, valor siguiente para el equipo 1 o 2", "Marker qui, valore successivo per la squadra 1 o 2", "Marker hier, nächster Wert für Team 1 oder 2", "Markör här, nästa värde för lag 1 eller 2", "Marcador aqui, valor seguinte para a equipa 1 ou 2"}},
    {"⇧1 ⇧2", {"The value before", "La valeur précédente", "El valor anterior", "Il valore precedente", "Der Wert davor", "Värdet före", "O valor anterior"}},
    {"S", {"Swap the serve", "Changer de serveur", "Cambiar el saque", "Cambia il servizio", "Aufschlag wechseln", "Byt serve", "Trocar o serviço"}},
    {"Delete", {"Delete the selected marker", "Supprimer le marqueur choisi", "Eliminar el marcador elegido", "Elimina il marker scelto", "Ausgewählten Marker löschen", "Ta bort vald markör", "Eliminar o marcador escolhido"}},
    {"⌘Z", {"Undo", "Annuler", "Deshacer", "Annulla", "Rückgängig", "Ångra", "Anular"}},
    {"⌘⇧Z ⌘Y", {"Redo", "Rétablir", "Rehacer", "Ripeti", "Wiederholen", "Gör om", "Refazer"}},
};

constexpr UiText project{"Project and window", "Projet et fenêtre", "Proyecto y ventana", "Progetto e finestra", "Projekt und Fenster", "Projekt och fönster", "Projeto e janela"};
constexpr Shortcut projectKeys[] = {
    {"⌘N", {"Start over", "Recommencer", "Empezar de nuevo", "Ricomincia", "Neu beginnen", "Börja om", "Começar de novo"}},
    {"⌘O", {"Open a video", "Ouvrir une vidéo", "Abrir un vídeo", "Apri un video", "Video öffnen", "Öppna en video", "Abrir um vídeo"}},
    {"⌘⇧O", {"Open a project", "Ouvrir un projet", "Abrir un proyecto", "Apri un progetto", "Projekt öffnen", "Öppna ett projekt", "Abrir um projeto"}},
    {"⌘S", {"Save the project", "Enregistrer le projet", "Guardar el proyecto", "Salva il progetto", "Projekt sichern", "Spara projektet", "Guardar o projeto"}},
    {"⌘⇧S", {"Save it under another name", "L'enregistrer sous un autre nom", "Guardarlo con otro nombre", "Salvalo con un altro nome", "Unter anderem Namen sichern", "Spara under ett annat namn", "Guardar com outro nome"}},
    {"⌘⇧E", {"Export the video", "Exporter la vidéo", "Exportar el vídeo", "Esporta il video", "Video exportieren", "Exportera videon", "Exportar o vídeo"}},
    {"⌘,", {"Preferences", "Préférences", "Preferencias", "Preferenze", "Einstellungen", "Inställningar", "Preferências"}},
    {"⌘? F1", {"This help", "Cette aide", "Esta ayuda", "Questa guida", "Diese Hilfe", "Den här hjälpen", "Esta ajuda"}},
    {"⌘Q", {"Quit", "Quitter", "Salir", "Esci", "Beenden", "Avsluta", "Sair"}},
};

constexpr ShortcutGroup groups[] = {{playback, playbackKeys}, {scoring, scoringKeys}, {project, projectKeys}};
// clang-format on

}

std::span<const ShortcutGroup> shortcutGroups() {
    return groups;
}

std::vector<QString> keyLabels(const Shortcut& shortcut, Language language) {
    std::vector<QString> labels;
    for (const QString& key : QString::fromUtf8(shortcut.keys).split(u' ')) {
        if (key == QStringLiteral("Space"))
            labels.push_back(t(language, spaceKey));
        else if (key == QStringLiteral("Delete"))
            labels.push_back(t(language, deleteKey));
        else
            labels.push_back(forThisDesktop(key, language));
    }
    return labels;
}

}
