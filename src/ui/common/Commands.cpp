#include "ui/common/Commands.h"

#include "l10n/DesktopWords.h"

#include <algorithm>

namespace pointloom {

namespace {

// clang-format off
constexpr UiText playPause{"Play or pause", "Lire ou mettre en pause", "Reproducir o pausar", "Riproduci o metti in pausa", "Abspielen oder anhalten", "Spela eller pausa", "Reproduzir ou pausar"};
constexpr UiText stepFrame{"Step one frame", "Avancer ou reculer d'une image", "Avanzar o retroceder un fotograma", "Avanti o indietro di un fotogramma", "Ein Bild vor oder zurück", "En bildruta framåt eller bakåt", "Avançar ou recuar um fotograma"};
constexpr UiText stepSecond{"Step one second", "Avancer ou reculer d'une seconde", "Avanzar o retroceder un segundo", "Avanti o indietro di un secondo", "Eine Sekunde vor oder zurück", "En sekund framåt eller bakåt", "Avançar ou recuar um segundo"};
constexpr UiText stepMarker{"Previous or next marker", "Marqueur précédent ou suivant", "Marcador anterior o siguiente", "Marker precedente o successivo", "Voriger oder nächster Marker", "Föregående eller nästa markör", "Marcador anterior ou seguinte"};
constexpr UiText shuttle{"Back 5 seconds, pause, play (again: faster)", "Reculer de 5 secondes, pause, lecture (encore : plus vite)", "Atrás 5 segundos, pausa, reproducir (otra vez: más rápido)", "Indietro di 5 secondi, pausa, riproduci (ancora: più veloce)", "5 Sekunden zurück, anhalten, abspielen (nochmals: schneller)", "Bakåt 5 sekunder, paus, spela (igen: snabbare)", "Recuar 5 segundos, pausa, reproduzir (outra vez: mais rápido)"};
constexpr UiText startEnd{"Start or end of the clip", "Début ou fin de la vidéo", "Principio o final del vídeo", "Inizio o fine del video", "Anfang oder Ende des Videos", "Början eller slutet av klippet", "Início ou fim do vídeo"};
constexpr UiText addMarker{"Add a marker with the score as it stands", "Ajouter un marqueur avec le score actuel", "Añadir un marcador con el resultado actual", "Aggiungi un marker con il punteggio attuale", "Marker mit dem aktuellen Stand setzen", "Lägg till en markör med aktuell ställning", "Adicionar um marcador com o resultado atual"};
constexpr UiText point{"Next point for team 1 or 2: a marker here, or the one that stands here", "Point suivant pour l'équipe 1 ou 2 : un marqueur ici, ou celui qui s'y trouve", "Punto siguiente del equipo 1 o 2: un marcador aquí, o el que ya está", "Punto successivo per la squadra 1 o 2: un marker qui, o quello già presente", "Nächster Punkt für Team 1 oder 2: ein Marker hier, oder der, der hier steht", "Nästa poäng för lag 1 eller 2: en markör här, eller den som står här", "Ponto seguinte da equipa 1 ou 2: um marcador aqui, ou o que já cá está"};
constexpr UiText pointBack{"One value back for team 1 or 2", "Une valeur en arrière pour l'équipe 1 ou 2", "Un valor atrás para el equipo 1 o 2", "Un valore indietro per la squadra 1 o 2", "Ein Wert zurück für Team 1 oder 2", "Ett värde tillbaka för lag 1 eller 2", "Um valor atrás para a equipa 1 ou 2"};
constexpr UiText swapServe{"Swap the serve of the selected marker", "Changer le service du marqueur sélectionné", "Cambiar el saque del marcador seleccionado", "Cambia il servizio del marker selezionato", "Aufschlag des gewählten Markers tauschen", "Byt serve på vald markör", "Trocar o serviço do marcador selecionado"};
constexpr UiText trim{"Export from here, export to here", "Exporter à partir d'ici, jusqu'ici", "Exportar desde aquí, hasta aquí", "Esporta da qui, fino a qui", "Ab hier exportieren, bis hier", "Exportera härifrån, hit", "Exportar a partir daqui, até aqui"};
constexpr UiText cut{"Mark a cut at the playhead", "Marquer une coupe ici", "Marcar un corte aquí", "Segna un taglio qui", "Schnitt an dieser Stelle markieren", "Markera en klippning här", "Marcar um corte aqui"};
constexpr UiText remove{"Remove the selected marker or cut", "Supprimer le marqueur ou la coupe sélectionné", "Eliminar el marcador o corte seleccionado", "Elimina il marker o il taglio selezionato", "Gewählten Marker oder Schnitt löschen", "Ta bort vald markör eller vald klippning", "Remover o marcador ou o corte selecionado"};
constexpr UiText rename{"Rename the marker in the list", "Renommer le marqueur dans la liste", "Renombrar el marcador en la lista", "Rinomina il marker nell'elenco", "Marker in der Liste umbenennen", "Byt namn på markören i listan", "Mudar o nome do marcador na lista"};
constexpr UiText move{"Nudge it (Shift: further); Shift while dragging: snap", "Le déplacer (Maj : plus loin) ; Maj en glissant : aimantation", "Moverlo (Mayús: más); Mayús al arrastrar: con ajuste", "Spostalo (Maiusc: di più); Maiusc trascinando: con aggancio", "Verschieben (Umschalt: weiter); Umschalt beim Ziehen: einrasten", "Knuffa den (Skift: längre); Skift vid dragning: fäst", "Movê-lo (Shift: mais); Shift ao arrastar: com encaixe"};
constexpr UiText scale{"Make it larger (→ ↑) or smaller (← ↓)", "L'agrandir (→ ↑) ou le réduire (← ↓)", "Agrandarlo (→ ↑) o reducirlo (← ↓)", "Ingrandiscilo (→ ↑) o riduciscilo (← ↓)", "Vergrößern (→ ↑) oder verkleinern (← ↓)", "Gör den större (→ ↑) eller mindre (← ↓)", "Aumentá-lo (→ ↑) ou reduzi-lo (← ↓)"};
constexpr UiText zoom{"Zoom the timeline in, out, or back to the whole clip", "Agrandir ou réduire la timeline, ou revoir toute la vidéo", "Ampliar o reducir la línea de tiempo, o ver todo el vídeo", "Ingrandisci o riduci la timeline, o mostra tutto il video", "Zeitleiste vergrößern, verkleinern oder das ganze Video zeigen", "Zooma in eller ut på tidslinjen, eller visa hela klippet", "Ampliar ou reduzir a linha do tempo, ou ver todo o vídeo"};
constexpr UiText arrowKeys{"Arrows on the scoreboard", "Flèches sur le score", "Flechas en el marcador", "Frecce sul tabellone", "Pfeile auf der Anzeige", "Pilar på tavlan", "Setas no placar"};
constexpr UiText controlArrowKeys{"⌘Arrows on the scoreboard", "⌘Flèches sur le score", "⌘Flechas en el marcador", "⌘Frecce sul tabellone", "⌘Pfeile auf der Anzeige", "⌘Pilar på tavlan", "⌘Setas no placar"};
constexpr UiText undo{"Undo", "Annuler", "Deshacer", "Annulla", "Rückgängig", "Ångra", "Anular"};
constexpr UiText redo{"Redo", "Rétablir", "Rehacer", "Ripeti", "Wiederholen", "Gör om", "Refazer"};
constexpr UiText startOver{"Start over", "Recommencer", "Empezar de nuevo", "Ricomincia", "Neu beginnen", "Börja om", "Começar de novo"};
constexpr UiText openVideo{"Open a video", "Ouvrir une vidéo", "Abrir un vídeo", "Apri un video", "Video öffnen", "Öppna en video", "Abrir um vídeo"};
constexpr UiText openProject{"Open a project", "Ouvrir un projet", "Abrir un proyecto", "Apri un progetto", "Projekt öffnen", "Öppna ett projekt", "Abrir um projeto"};
constexpr UiText saveProject{"Save the project", "Enregistrer le projet", "Guardar el proyecto", "Salva il progetto", "Projekt sichern", "Spara projektet", "Guardar o projeto"};
constexpr UiText saveProjectAs{"Save it under another name", "L'enregistrer sous un autre nom", "Guardarlo con otro nombre", "Salvalo con un altro nome", "Unter anderem Namen sichern", "Spara under ett annat namn", "Guardar com outro nome"};
constexpr UiText exportVideo{"Export the video", "Exporter la vidéo", "Exportar el vídeo", "Esporta il video", "Video exportieren", "Exportera videon", "Exportar o vídeo"};
constexpr UiText preferences{"Preferences", "Préférences", "Preferencias", "Preferenze", "Einstellungen", "Inställningar", "Preferências"};
constexpr UiText help{"This help", "Cette aide", "Esta ayuda", "Questa guida", "Diese Hilfe", "Den här hjälpen", "Esta ajuda"};
constexpr UiText quit{"Quit", "Quitter", "Salir", "Esci", "Beenden", "Avsluta", "Sair"};

constexpr UiText spaceKey{"Space", "Espace", "Espacio", "Spazio", "Leertaste", "Blanksteg", "Espaço"};
constexpr UiText homeKey{"Home", "Début", "Inicio", "Inizio", "Pos1", "Home", "Home"};
constexpr UiText endKey{"End", "Fin", "Fin", "Fine", "Ende", "End", "End"};
constexpr UiText deleteKey{"Delete", "Suppr", "Supr", "Canc", "Entf", "Delete", "Delete"};

constexpr auto ctrlShift = Qt::CTRL | Qt::SHIFT;

using enum CommandGroup;

constexpr CommandRow rows[] = {
    {.id = Command::playPause, .group = editor, .does = playPause, .keys = {Qt::Key_Space}},
    {.id = Command::frameBack, .group = editor, .does = stepFrame, .keys = {Qt::Key_Left}, .repeats = true},
    {.id = Command::frameForward, .group = editor, .does = stepFrame, .keys = {Qt::Key_Right}, .repeats = true},
    {.id = Command::secondBack, .group = editor, .does = stepSecond, .keys = {Qt::SHIFT | Qt::Key_Left}, .repeats = true},
    {.id = Command::secondForward, .group = editor, .does = stepSecond, .keys = {Qt::SHIFT | Qt::Key_Right}, .repeats = true},
    {.id = Command::previousMarker, .group = editor, .does = stepMarker, .keys = {Qt::Key_Up}, .repeats = true},
    {.id = Command::nextMarker, .group = editor, .does = stepMarker, .keys = {Qt::Key_Down}, .repeats = true},
    {.id = Command::jumpBack, .group = editor, .does = shuttle, .keys = {Qt::Key_J}, .repeats = true},
    {.id = Command::pause, .group = editor, .does = shuttle, .keys = {Qt::Key_K}},
    {.id = Command::playFaster, .group = editor, .does = shuttle, .keys = {Qt::Key_L}},
    {.id = Command::goToStart, .group = editor, .does = startEnd, .keys = {Qt::Key_Home}},
    {.id = Command::goToEnd, .group = editor, .does = startEnd, .keys = {Qt::Key_End}},
    {.id = Command::addMarker, .group = editor, .does = addMarker, .keys = {Qt::Key_M, Qt::Key_Plus}, .hiddenKeys = {Qt::SHIFT | Qt::Key_Plus}},
    {.id = Command::pointFirst, .group = editor, .does = point, .keys = {Qt::Key_1}},
    {.id = Command::pointSecond, .group = editor, .does = point, .keys = {Qt::Key_2}},
    {.id = Command::pointBackFirst, .group = editor, .does = pointBack, .keys = {Qt::SHIFT | Qt::Key_1}},
    {.id = Command::pointBackSecond, .group = editor, .does = pointBack, .keys = {Qt::SHIFT | Qt::Key_2}},
    {.id = Command::swapServe, .group = editor, .does = swapServe, .keys = {Qt::Key_S}},
    {.id = Command::trimStart, .group = editor, .does = trim, .keys = {Qt::Key_I}},
    {.id = Command::trimEnd, .group = editor, .does = trim, .keys = {Qt::Key_O}},
    {.id = Command::addCut, .group = editor, .does = cut, .keys = {Qt::Key_C}},
    {.id = Command::deleteSelection, .group = editor, .does = remove, .keys = {Qt::Key_Delete}, .hiddenKeys = {Qt::Key_Backspace}},
    {.id = Command::renameMarker, .group = editor, .does = rename, .keys = {Qt::Key_F2}},
    {.id = Command::moveScoreboard, .group = editor, .does = move, .fixedKeys = arrowKeys},
    {.id = Command::scaleScoreboard, .group = editor, .does = scale, .fixedKeys = controlArrowKeys},
    {.id = Command::zoomIn, .group = editor, .does = zoom, .keys = {Qt::CTRL | Qt::Key_Plus}, .hiddenKeys = {ctrlShift | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, .repeats = true},
    {.id = Command::zoomOut, .group = editor, .does = zoom, .keys = {Qt::CTRL | Qt::Key_Minus}, .repeats = true},
    {.id = Command::zoomToFit, .group = editor, .does = zoom, .keys = {Qt::CTRL | Qt::Key_0}},
    {.id = Command::undo, .does = undo, .title = "Undo", .keys = {Qt::CTRL | Qt::Key_Z}},
    {.id = Command::redo, .does = redo, .title = "Redo", .keys = {ctrlShift | Qt::Key_Z, Qt::CTRL | Qt::Key_Y}},
    {.id = Command::newSession, .does = startOver, .title = "New Session", .keys = {Qt::CTRL | Qt::Key_N}},
    {.id = Command::openVideo, .does = openVideo, .title = "Open Video…", .keys = {Qt::CTRL | Qt::Key_O}},
    {.id = Command::openProject, .does = openProject, .title = "Open Project…", .keys = {ctrlShift | Qt::Key_O}},
    {.id = Command::saveProject, .does = saveProject, .title = "Save Project", .keys = {Qt::CTRL | Qt::Key_S}},
    {.id = Command::saveProjectAs, .does = saveProjectAs, .title = "Save Project As…", .keys = {ctrlShift | Qt::Key_S}},
    {.id = Command::exportVideo, .does = exportVideo, .title = "Export Video…", .keys = {ctrlShift | Qt::Key_E}},
    {.id = Command::showPreferences, .does = preferences, .title = "Preferences…", .keys = {Qt::CTRL | Qt::Key_Comma}},
    {.id = Command::showHelp, .does = help, .title = "Help…", .keys = {Qt::CTRL | Qt::Key_Question, Qt::Key_F1}},
    {.id = Command::quit, .does = quit, .title = "Quit", .keys = {Qt::CTRL | Qt::Key_Q}},
    {.id = Command::showAbout, .title = "About Pointloom"},
    {.id = Command::showLicence, .title = "Licence…"},
    {.id = Command::downloadSampleCSV, .title = "Download Sample CSV…"},
};
// clang-format on

template <std::size_t count>
void append(QList<QKeyCombination>& keys, const std::array<QKeyCombination, count>& more) {
    std::ranges::copy_if(more, std::back_inserter(keys),
                         [](QKeyCombination key) { return key.key() != Qt::Key_unknown; });
}

QString keyName(Qt::Key key, Language language) {
    switch (key) {
    case Qt::Key_Left:
        return QStringLiteral("←");
    case Qt::Key_Right:
        return QStringLiteral("→");
    case Qt::Key_Up:
        return QStringLiteral("↑");
    case Qt::Key_Down:
        return QStringLiteral("↓");
    case Qt::Key_Space:
        return t(language, spaceKey);
    case Qt::Key_Home:
        return t(language, homeKey);
    case Qt::Key_End:
        return t(language, endKey);
    case Qt::Key_Delete:
        return t(language, deleteKey);
    default:
        return QKeySequence(key).toString(QKeySequence::PortableText);
    }
}

}

std::span<const CommandRow> commandTable() {
    return rows;
}

const CommandRow& commandRow(Command command) {
    return *std::ranges::find(rows, command, &CommandRow::id);
}

const CommandKeys& CommandKeys::standard() {
    static const CommandKeys keys;
    return keys;
}

QList<QKeyCombination> CommandKeys::shown(Command command) const {
    if (const auto chosen = m_chosen.find(command); chosen != m_chosen.end())
        return chosen->second;
    QList<QKeyCombination> keys;
    append(keys, commandRow(command).keys);
    return keys;
}

QList<QKeyCombination> CommandKeys::of(Command command) const {
    QList<QKeyCombination> keys = shown(command);
    if (!m_chosen.contains(command))
        append(keys, commandRow(command).hiddenKeys);
    return keys;
}

const CommandRow* CommandKeys::editorCommand(QKeyCombination pressed) const {
    const auto* const found = std::ranges::find_if(rows, [&](const CommandRow& row) {
        return row.group == CommandGroup::editor && of(row.id).contains(pressed);
    });
    return found == std::end(rows) ? nullptr : found;
}

QString keyLabel(QKeyCombination key, Language language) {
    QString label;
    if (key.keyboardModifiers().testFlag(Qt::ControlModifier))
        label += u'⌘';
    if (key.keyboardModifiers().testFlag(Qt::ShiftModifier))
        label += u'⇧';
    return forThisDesktop(label, language) + keyName(key.key(), language);
}

std::vector<KeyListLine> keyList(CommandGroup group, const CommandKeys& keys, Language language) {
    std::vector<KeyListLine> lines;
    for (const CommandRow& row : rows) {
        QStringList labels;
        if (row.fixedKeys.english)
            labels << forThisDesktop(t(language, row.fixedKeys), language);
        for (const QKeyCombination key : keys.shown(row.id))
            labels << keyLabel(key, language);
        if (row.group != group || labels.isEmpty())
            continue;
        if (!lines.empty() && lines.back().does.english == row.does.english)
            lines.back().keys += labels;
        else
            lines.push_back({labels, row.does});
    }
    return lines;
}

}
