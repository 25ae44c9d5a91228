// Words of the editor that no other screen has.
#pragma once

#include "l10n/UiText.h"

namespace pointloom::EditorTexts {

// clang-format off
constexpr UiText goToStart{"Go to start", "Aller au début", "Ir al principio", "Vai all'inizio", "Zum Anfang", "Till början", "Ir para o início"};
constexpr UiText stepBack{"One frame back", "Une image en arrière", "Un fotograma atrás", "Un fotogramma indietro", "Ein Bild zurück", "En bildruta bakåt", "Um fotograma atrás"};
constexpr UiText play{"Play", "Lire", "Reproducir", "Riproduci", "Abspielen", "Spela", "Reproduzir"};
constexpr UiText pause{"Pause", "Pause", "Pausa", "Pausa", "Anhalten", "Pausa", "Pausa"};
constexpr UiText stepForward{"One frame forward", "Une image en avant", "Un fotograma adelante", "Un fotogramma avanti", "Ein Bild vor", "En bildruta framåt", "Um fotograma à frente"};
constexpr UiText goToEnd{"Go to end", "Aller à la fin", "Ir al final", "Vai alla fine", "Zum Ende", "Till slutet", "Ir para o fim"};
constexpr UiText speed{"Playback speed", "Vitesse de lecture", "Velocidad", "Velocità", "Geschwindigkeit", "Hastighet", "Velocidade"};
constexpr UiText volume{"Volume", "Volume", "Volumen", "Volume", "Lautstärke", "Volym", "Volume"};
constexpr UiText mute{"Mute", "Couper le son", "Silenciar", "Disattiva audio", "Stumm", "Tyst", "Silenciar"};
constexpr UiText unmute{"Unmute", "Remettre le son", "Activar sonido", "Riattiva audio", "Ton an", "Ljud på", "Repor o som"};
constexpr UiText playhead{"Playhead", "Position de lecture", "Posición", "Posizione", "Abspielposition", "Position", "Posição"};
constexpr UiText importAgain{"Import again", "Réimporter", "Importar de nuevo", "Importa di nuovo", "Neu importieren", "Importera igen", "Importar de novo"};
constexpr UiText closeMessage{"Close message", "Fermer le message", "Cerrar el mensaje", "Chiudi il messaggio", "Meldung schließen", "Stäng meddelandet", "Fechar a mensagem"};
constexpr UiText noVideoYet{"No video yet", "Pas encore de vidéo", "Aún no hay vídeo", "Ancora nessun video", "Noch kein Video", "Ingen video än", "Ainda sem vídeo"};
constexpr UiText noVideoHint{"Import a clip to see the scoreboard over it.", "Importe une vidéo pour y voir le score.", "Importa un vídeo para ver el marcador encima.", "Importa un video per vederci sopra il tabellone.", "Importiere ein Video, um die Anzeige darüber zu sehen.", "Importera ett klipp för att se tavlan över det.", "Importa um vídeo para veres o placar por cima."};
constexpr UiText noPicture{"The picture cannot be played here.", "L'image ne peut pas être lue ici.", "La imagen no se puede reproducir aquí.", "L'immagine non può essere riprodotta qui.", "Das Bild kann hier nicht abgespielt werden.", "Bilden kan inte spelas här.", "A imagem não pode ser reproduzida aqui."};
constexpr UiText noSoundDevice{"No sound device: the clip plays silently", "Aucun périphérique audio : lecture sans le son", "No hay dispositivo de sonido: se reproduce en silencio", "Nessun dispositivo audio: riproduzione senza suono", "Kein Audiogerät: Das Video läuft ohne Ton", "Ingen ljudenhet: klippet spelas utan ljud", "Sem dispositivo de som: a reprodução é silenciosa"};
constexpr UiText scoreboard{"Scoreboard", "Tableau de score", "Marcador", "Tabellone", "Anzeige", "Resultattavla", "Placar"};
constexpr UiText scoreboardHint{"Drag to move, arrow keys to nudge", "Glisser pour déplacer, flèches pour ajuster", "Arrastra para mover, flechas para ajustar", "Trascina per spostare, frecce per regolare", "Ziehen zum Verschieben, Pfeiltasten zum Rücken", "Dra för att flytta, piltangenter för att knuffa", "Arrasta para mover, setas para ajustar"};
constexpr UiText markerButton{"Marker", "Marqueur", "Marcador", "Marker", "Marker", "Markör", "Marcador"};
constexpr UiText exportButton{"Export…", "Exporter…", "Exportar…", "Esporta…", "Exportieren…", "Exportera…", "Exportar…"};
constexpr UiText editInitial{"Edit initial score", "Modifier le score initial", "Editar resultado inicial", "Modifica punteggio iniziale", "Anfangsstand bearbeiten", "Ändra startställning", "Editar resultado inicial"};
constexpr UiText clearInitial{"Clear initial score", "Effacer le score initial", "Borrar resultado inicial", "Cancella punteggio iniziale", "Anfangsstand löschen", "Rensa startställning", "Limpar resultado inicial"};
constexpr UiText swapServe{"Swap serve (S)", "Changer le service (S)", "Cambiar saque (S)", "Cambia servizio (S)", "Aufschlag tauschen (S)", "Byt serve (S)", "Trocar serviço (S)"};
constexpr UiText tiebreak{"Tie-break", "Jeu décisif", "Muerte súbita", "Tie-break", "Tie-Break", "Tie-break", "Tie-break"};
constexpr UiText tiebreakShort{"TB", "JD", "TB", "TB", "TB", "TB", "TB"};
constexpr UiText gameShort{"Game", "Jeu", "Juego", "Game", "Spiel", "Game", "Jogo"};
constexpr UiText points{"Points", "Points", "Puntos", "Punti", "Punkte", "Poäng", "Pontos"};
constexpr UiText serveShort{"Serve", "Service", "Saque", "Servizio", "Aufschl.", "Serve", "Serviço"};
constexpr UiText more{"More", "Plus", "Más", "Di più", "Mehr", "Mer", "Mais"};
constexpr UiText less{"Less", "Moins", "Menos", "Di meno", "Weniger", "Mindre", "Menos"};
constexpr UiText labelHint{"Add a label", "Ajouter un libellé", "Añadir etiqueta", "Aggiungi etichetta", "Bezeichnung", "Lägg till etikett", "Adicionar etiqueta"};
// clang-format on

}
