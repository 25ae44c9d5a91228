#include "ui/common/Shortcuts.h"

namespace pointloom {

namespace {

// Names of keys that are the same in every language.
constexpr UiText everywhere(const char* keys) {
    return {keys, keys, keys, keys, keys, keys, keys};
}

// clang-format off
constexpr ShortcutRow rows[] = {
    {{"Space", "Espace", "Espacio", "Spazio", "Leertaste", "Blanksteg", "Espaço"},
     {"Play or pause", "Lire ou mettre en pause", "Reproducir o pausar", "Riproduci o metti in pausa",
      "Abspielen oder anhalten", "Spela eller pausa", "Reproduzir ou pausar"}},
    {everywhere("← →"),
     {"Step one frame", "Avancer ou reculer d'une image", "Avanzar o retroceder un fotograma",
      "Avanti o indietro di un fotogramma", "Ein Bild vor oder zurück", "En bildruta framåt eller bakåt",
      "Avançar ou recuar um fotograma"}},
    {{"Shift+←, Shift+→", "Maj+←, Maj+→", "Mayús+←, Mayús+→", "Maiusc+←, Maiusc+→", "Umschalt+←, Umschalt+→",
      "Skift+←, Skift+→", "Shift+←, Shift+→"},
     {"Step one second", "Avancer ou reculer d'une seconde", "Avanzar o retroceder un segundo",
      "Avanti o indietro di un secondo", "Eine Sekunde vor oder zurück", "En sekund framåt eller bakåt",
      "Avançar ou recuar um segundo"}},
    {everywhere("↑ ↓"),
     {"Previous or next marker", "Marqueur précédent ou suivant", "Marcador anterior o siguiente",
      "Marker precedente o successivo", "Voriger oder nächster Marker", "Föregående eller nästa markör",
      "Marcador anterior ou seguinte"}},
    {everywhere("J K L"),
     {"Back 5 seconds, pause, play (again: faster)", "Reculer de 5 secondes, pause, lecture (encore : plus vite)",
      "Atrás 5 segundos, pausa, reproducir (otra vez: más rápido)",
      "Indietro di 5 secondi, pausa, riproduci (ancora: più veloce)",
      "5 Sekunden zurück, anhalten, abspielen (nochmals: schneller)",
      "Bakåt 5 sekunder, paus, spela (igen: snabbare)",
      "Recuar 5 segundos, pausa, reproduzir (outra vez: mais rápido)"}},
    {{"Home, End", "Début, Fin", "Inicio, Fin", "Inizio, Fine", "Pos1, Ende", "Home, End", "Home, End"},
     {"Start or end of the clip", "Début ou fin de la vidéo", "Principio o final del vídeo",
      "Inizio o fine del video", "Anfang oder Ende des Videos", "Början eller slutet av klippet",
      "Início ou fim do vídeo"}},
    {everywhere("M, +"),
     {"Add a marker with the score as it stands", "Ajouter un marqueur avec le score actuel",
      "Añadir un marcador con el resultado actual", "Aggiungi un marker con il punteggio attuale",
      "Marker mit dem aktuellen Stand setzen", "Lägg till en markör med aktuell ställning",
      "Adicionar um marcador com o resultado atual"}},
    {everywhere("1, 2"),
     {"Next point for team 1 or 2: a marker here, or the one that stands here",
      "Point suivant pour l'équipe 1 ou 2 : un marqueur ici, ou celui qui s'y trouve",
      "Punto siguiente del equipo 1 o 2: un marcador aquí, o el que ya está",
      "Punto successivo per la squadra 1 o 2: un marker qui, o quello già presente",
      "Nächster Punkt für Team 1 oder 2: ein Marker hier, oder der, der hier steht",
      "Nästa poäng för lag 1 eller 2: en markör här, eller den som står här",
      "Ponto seguinte da equipa 1 ou 2: um marcador aqui, ou o que já cá está"}},
    {{"Shift+1, Shift+2", "Maj+1, Maj+2", "Mayús+1, Mayús+2", "Maiusc+1, Maiusc+2", "Umschalt+1, Umschalt+2",
      "Skift+1, Skift+2", "Shift+1, Shift+2"},
     {"One value back for team 1 or 2", "Une valeur en arrière pour l'équipe 1 ou 2",
      "Un valor atrás para el equipo 1 o 2", "Un valore indietro per la squadra 1 o 2",
      "Ein Wert zurück für Team 1 oder 2", "Ett värde tillbaka för lag 1 eller 2",
      "Um valor atrás para a equipa 1 ou 2"}},
    {everywhere("S"),
     {"Swap the serve of the selected marker", "Changer le service du marqueur sélectionné",
      "Cambiar el saque del marcador seleccionado", "Cambia il servizio del marker selezionato",
      "Aufschlag des gewählten Markers tauschen", "Byt serve på vald markör",
      "Trocar o serviço do marcador selecionado"}},
    {everywhere("I, O"),
     {"Export from here, export to here", "Exporter à partir d'ici, jusqu'ici", "Exportar desde aquí, hasta aquí",
      "Esporta da qui, fino a qui", "Ab hier exportieren, bis hier", "Exportera härifrån, hit",
      "Exportar a partir daqui, até aqui"}},
    {everywhere("C"),
     {"Mark a cut at the playhead", "Marquer une coupe ici", "Marcar un corte aquí", "Segna un taglio qui",
      "Schnitt an dieser Stelle markieren", "Markera en klippning här", "Marcar um corte aqui"}},
    {{"Delete", "Suppr", "Supr", "Canc", "Entf", "Delete", "Delete"},
     {"Remove the selected marker or cut", "Supprimer le marqueur ou la coupe sélectionné",
      "Eliminar el marcador o corte seleccionado", "Elimina il marker o il taglio selezionato",
      "Gewählten Marker oder Schnitt löschen", "Ta bort vald markör eller vald klippning",
      "Remover o marcador ou o corte selecionado"}},
    {everywhere("F2"),
     {"Rename the marker in the list", "Renommer le marqueur dans la liste", "Renombrar el marcador en la lista",
      "Rinomina il marker nell'elenco", "Marker in der Liste umbenennen", "Byt namn på markören i listan",
      "Mudar o nome do marcador na lista"}},
    {{"Arrows on the scoreboard", "Flèches sur le score", "Flechas en el marcador", "Frecce sul tabellone",
      "Pfeile auf der Anzeige", "Pilar på tavlan", "Setas no placar"},
     {"Nudge it (Shift: further); Shift while dragging: snap",
      "Le déplacer (Maj : plus loin) ; Maj en glissant : aimantation",
      "Moverlo (Mayús: más); Mayús al arrastrar: con ajuste",
      "Spostalo (Maiusc: di più); Maiusc trascinando: con aggancio",
      "Verschieben (Umschalt: weiter); Umschalt beim Ziehen: einrasten",
      "Knuffa den (Skift: längre); Skift vid dragning: fäst",
      "Movê-lo (Shift: mais); Shift ao arrastar: com encaixe"}},
    {{"⌘Arrows on the scoreboard", "⌘Flèches sur le score", "⌘Flechas en el marcador", "⌘Frecce sul tabellone",
      "⌘Pfeile auf der Anzeige", "⌘Pilar på tavlan", "⌘Setas no placar"},
     {"Make it larger (→ ↑) or smaller (← ↓)", "L'agrandir (→ ↑) ou le réduire (← ↓)",
      "Agrandarlo (→ ↑) o reducirlo (← ↓)", "Ingrandiscilo (→ ↑) o riduciscilo (← ↓)",
      "Vergrößern (→ ↑) oder verkleinern (← ↓)", "Gör den större (→ ↑) eller mindre (← ↓)",
      "Aumentá-lo (→ ↑) ou reduzi-lo (← ↓)"}},
    {everywhere("⌘+, ⌘-, ⌘0"),
     {"Zoom the timeline in, out, or back to the whole clip",
      "Agrandir ou réduire la timeline, ou revoir toute la vidéo",
      "Ampliar o reducir la línea de tiempo, o ver todo el vídeo",
      "Ingrandisci o riduci la timeline, o mostra tutto il video",
      "Zeitleiste vergrößern, verkleinern oder das ganze Video zeigen",
      "Zooma in eller ut på tidslinjen, eller visa hela klippet",
      "Ampliar ou reduzir a linha do tempo, ou ver todo o vídeo"}},
};

constexpr Qt::KeyboardModifiers plain = Qt::NoModifier;
constexpr Qt::KeyboardModifiers shift = Qt::ShiftModifier;
constexpr Qt::KeyboardModifiers control = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers controlShift = Qt::ControlModifier | Qt::ShiftModifier;

constexpr EditorKey keys[] = {
    {Qt::Key_Space, plain, EditorAction::playPause},
    {Qt::Key_Left, plain, EditorAction::frameBack},
    {Qt::Key_Right, plain, EditorAction::frameForward},
    {Qt::Key_Left, shift, EditorAction::secondBack},
    {Qt::Key_Right, shift, EditorAction::secondForward},
    {Qt::Key_Up, plain, EditorAction::previousMarker},
    {Qt::Key_Down, plain, EditorAction::nextMarker},
    {Qt::Key_J, plain, EditorAction::jumpBack},
    {Qt::Key_K, plain, EditorAction::pause},
    {Qt::Key_L, plain, EditorAction::playFaster},
    {Qt::Key_Home, plain, EditorAction::goToStart},
    {Qt::Key_End, plain, EditorAction::goToEnd},
    {Qt::Key_M, plain, EditorAction::addMarker},
    {Qt::Key_Plus, plain, EditorAction::addMarker},
    {Qt::Key_Plus, shift, EditorAction::addMarker}, // where + stands above another character
    {Qt::Key_1, plain, EditorAction::pointTeam1},
    {Qt::Key_2, plain, EditorAction::pointTeam2},
    {Qt::Key_1, shift, EditorAction::pointBackTeam1},
    {Qt::Key_2, shift, EditorAction::pointBackTeam2},
    {Qt::Key_S, plain, EditorAction::swapServe},
    {Qt::Key_I, plain, EditorAction::trimStart},
    {Qt::Key_O, plain, EditorAction::trimEnd},
    {Qt::Key_C, plain, EditorAction::addCut},
    {Qt::Key_Delete, plain, EditorAction::deleteSelection},
    {Qt::Key_Backspace, plain, EditorAction::deleteSelection},
    {Qt::Key_Plus, control, EditorAction::zoomIn},
    {Qt::Key_Plus, controlShift, EditorAction::zoomIn},
    {Qt::Key_Equal, control, EditorAction::zoomIn}, // the key of + without Shift
    {Qt::Key_Minus, control, EditorAction::zoomOut},
    {Qt::Key_0, control, EditorAction::zoomToFit},
};
// clang-format on

}

std::span<const ShortcutRow> editorShortcuts() {
    return rows;
}

std::span<const EditorKey> editorKeys() {
    return keys;
}

}
