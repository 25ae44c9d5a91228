#include "l10n/translations/TextList.h"

namespace pointloom::texts {

namespace {

using enum L10nKey;

// clang-format off
constexpr Text list[] = {
    {continueBtn, u"Weiter"},
    {back, u"Zurück"},
    {cancel, u"Abbrechen"},
    {done, u"Fertig"},
    {retry, u"Erneut versuchen"},
    {reset, u"Zurücksetzen"},
    {remove, u"Entfernen"},
    {optional_, u"Optional"},
    {resetTooltip, u"Von vorn beginnen"},
    {resetDialogTitle, u"Von vorn beginnen?"},
    {resetDialogMessage, u"Alle Daten werden gelöscht."},
    {resetConfirm, u"Von vorn beginnen"},
    {chooseSport, u"Sportart wählen"},
    {chooseSportSubtitle, u"Wähle die Sportart, die du aufnimmst."},
    {templatesCount, u"%d Vorlagen"},
    {chooseTemplate, u"Vorlage wählen"},
    {chooseTemplateSubtitle, u"Wähle, wie dein Anzeigebrett im Video aussehen soll"},
    {selectTemplateToContinue, u"Wähle eine Vorlage, um fortzufahren"},
    {matchConfig, u"Match einrichten"},
    {matchConfigSubtitle, u"Lege Spielernamen und Spielmodus fest"},
    {matchFormat, u"Spielmodus"},
    {singles, u"Einzel"},
    {doubles, u"Doppel"},
    {numberOfSets, u"Anzahl der Sätze"},
    {oneSet, u"1 Satz"},
    {bestOf3, u"Best of 3"},
    {bestOf5, u"Best of 5"},
    {team1, u"Team 1"},
    {team2, u"Team 2"},
    {playerName, u"Spielername"},
    {player1, u"Spieler 1"},
    {player2, u"Spieler 2"},
    {flag, u"Flagge (z.B. FR, US)"},
    {player2Flag, u"Flagge von Spieler 2 (z.B. FR, US)"},
    {egDravnik, u"z.B. Dravnik"},
    {egSolvane, u"z.B. Solvane"},
    {egAlbaret, u"z.B. Albaret"},
    {egNavorro, u"z.B. Navorro"},
    {fillNamesToContinue, u"Gib alle Spielernamen ein, um fortzufahren"},
    {logoOptional, u"Vereins-/Turnierlogo (optional)"},
    {noLogo, u"Kein Logo ausgewählt"},
    {chooseLogo, u"Logo wählen…"},
    {changeLogo, u"Ändern…"},
    {removeLogo, u"Entfernen"},
    {logoScoreboardHint, u"Erscheint auf dem Anzeigebrett im Video"},
    {importVideo, u"Video importieren"},
    {importVideoSubtitle, u"Wähle das Video, in das der Spielstand eingeblendet werden soll"},
    {dropVideoHere, u"Zieh dein Video hierher"},
    {orClickToBrowse, u"oder klicke zum Auswählen"},
    {changeVideo, u"Video wechseln"},
    {openEditor, u"Editor öffnen"},
    {selectVideoFile, u"Videodatei auswählen"},
    {couldNotReadDuration, u"Videodauer konnte nicht gelesen werden."},
    {couldNotReadMetadata, u"Video-Metadaten konnten nicht gelesen werden."},
    {sets, u"Sätze"},
    {setLabel, u"Satz"},
    {gameScore, u"Stand im Spiel"},
    {serving, u"Schlägt auf"},
    {setServe, u"Aufschlag festlegen"},
    {addMarker, u"Marker hinzufügen"},
    {addMarkerTooltip, u"Marker an der aktuellen Stelle hinzufügen (M)"},
    {backToVideoImport, u"Zurück zum Videoimport"},
    {exportVideo, u"Video exportieren"},
    {previewFrame, u"Vorschaubild erstellen"},
    {generating, u"Wird erstellt…"},
    {liveScore, u"Aktueller Spielstand"},
    {noConfig, u"Nicht eingerichtet"},
    {initialScore, u"Anfangsstand"},
    {markersSection, u"Marker (%d)"},
    {importMarkersCSV, u"Marker aus CSV importieren"},
    {importMarkersCSVTooltip, u"Marker aus einer CSV-Datei importieren"},
    {noMarkers, u"Keine Marker. Drücke M oder +, um an der aktuellen Stelle einen hinzuzufügen."},
    {noValidMarkersInCSV, u"Keine gültigen Marker in der CSV-Datei gefunden."},
    {couldNotReadFile, u"Datei konnte nicht gelesen werden: %@"},
    {editMarker, u"Marker bearbeiten"},
    {addMarkerToDefineScore,
     u"Füge einen Marker hinzu, um den Spielstand zu einem bestimmten Zeitpunkt festzulegen."},
    {selectMarkerToEdit, u"Wähle einen Marker, um seinen Spielstand zu bearbeiten."},
    {markerLabel, u"Bezeichnung"},
    {framePreview, u"Bildvorschau"},
    {marker, u"Marker"},
    {deleteMarker, u"Marker löschen"},
    {exportVideoTitle, u"Videoexport"},
    {noMarkersWarning, u"Keine Marker — das Anzeigebrett ist statisch."},
    {templateLabel, u"Vorlage"},
    {duration, u"Dauer"},
    {markers, u"Marker"},
    {formatLabel, u"Format"},
    {saveTo, u"Speicherort"},
    {startExport, u"Export starten"},
    {exporting, u"Wird exportiert…"},
    {exportComplete, u"Export abgeschlossen"},
    {showInFinder, u"Im Finder anzeigen"},
    {exportFailed, u"Export fehlgeschlagen"},
    {helpTitle, u"Pointloom Hilfe"},
    {helpIntro, u"Pointloom blendet ein animiertes Anzeigebrett in deine Sportvideos ein."},
    {helpStep0, u"Schritt 1 — Sportart wählen"},
    {helpStep0Detail,
     u"Wähle die Sportart, die du aufgenommen hast. "
     u"Du siehst dann nur die Vorlagen für diese Sportart."},
    {helpStep1, u"Schritt 2 — Vorlage wählen"},
    {helpStep1Detail, u"Wähle den Stil für dein Anzeigebrett. Für jede Sportart gibt es mehrere."},
    {helpStep2, u"Schritt 3 — Match einrichten"},
    {helpStep2Detail,
     u"Gib die Spielernamen ein, wähle Einzel oder Doppel und lege die Anzahl der Sätze fest."},
    {helpStep3, u"Schritt 4 — Video importieren"},
    {helpStep3Detail,
     u"Zieh deine Videodatei ins Fenster oder klicke, um sie auszuwählen. "
     u"Unterstützte Formate: MP4, MOV, M4V."},
    {helpStep4, u"Schritt 5 — Editor"},
    {helpStep4Detail,
     u"Drücke M oder +, um an der aktuellen Stelle einen Marker hinzuzufügen. "
     u"Lege für jeden Marker den Spielstand fest. Zieh das Anzeigebrett an die gewünschte Stelle. "
     u"Drücke ⌘⇧E zum Exportieren."},
    {helpCSVSection, u"CSV-Import"},
    {helpCSVDetail,
     u"Importiere Marker aus einer CSV-Datei. "
     u"Jede Zeile legt den Spielstand zu einem bestimmten Zeitpunkt fest.\n\n"
     u"Format: startTime, label, servingTeam, game_team1, game_team2, set1_t1, set1_t2, …"},
    {helpTipsSection, u"Tipps"},
    {helpTipsDetail,
     u"• M oder + — Marker an der aktuellen Stelle hinzufügen\n"
     u"• Leertaste — Wiedergabe / Pause\n"
     u"• ← → — Bild für Bild vor und zurück\n"
     u"• ⌘⇧E — Video exportieren\n"
     u"• Zieh das Anzeigebrett an die gewünschte Stelle"},
    {downloadSampleCSV, u"Beispiel-CSV herunterladen"},
};
// clang-format on

}

TextList german() {
    return list;
}

}
