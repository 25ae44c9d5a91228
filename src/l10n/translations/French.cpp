#include "l10n/translations/TextList.h"

namespace pointloom::texts {

namespace {

using enum L10nKey;

// clang-format off
constexpr Text list[] = {
    {continueBtn, u"Continuer"},
    {back, u"Retour"},
    {cancel, u"Annuler"},
    {done, u"Terminé"},
    {retry, u"Réessayer"},
    {reset, u"Réinitialiser"},
    {remove, u"Retirer"},
    {optional_, u"Facultatif"},
    {resetTooltip, u"Recommencer depuis le début"},
    {resetDialogTitle, u"Tout recommencer ?"},
    {resetDialogMessage, u"Toutes les données seront effacées."},
    {resetConfirm, u"Recommencer"},
    {chooseSport, u"Choisir un sport"},
    {chooseSportSubtitle, u"Choisis le sport que tu filmes."},
    {templatesCount, u"%d templates"},
    {chooseTemplate, u"Choisir un template"},
    {chooseTemplateSubtitle, u"Choisis le style visuel de ton tableau de score"},
    {selectTemplateToContinue, u"Choisis un template pour continuer"},
    {matchConfig, u"Configuration du match"},
    {matchConfigSubtitle, u"Indique le nom des joueurs et le format du match"},
    {matchFormat, u"Format du match"},
    {singles, u"Simple"},
    {doubles, u"Double"},
    {numberOfSets, u"Nombre de sets"},
    {oneSet, u"1 set"},
    {bestOf3, u"Au meilleur des 3"},
    {bestOf5, u"Au meilleur des 5"},
    {team1, u"Équipe 1"},
    {team2, u"Équipe 2"},
    {playerName, u"Nom du joueur"},
    {player1, u"Joueur 1"},
    {player2, u"Joueur 2"},
    {flag, u"Drapeau (ex. FR, US)"},
    {player2Flag, u"Drapeau du joueur 2 (ex. FR, US)"},
    {egDravnik, u"ex. Dravnik"},
    {egSolvane, u"ex. Solvane"},
    {egAlbaret, u"ex. Albaret"},
    {egNavorro, u"ex. Navorro"},
    {fillNamesToContinue, u"Saisis le nom de tous les joueurs pour continuer"},
    {logoOptional, u"Logo du club / tournoi (facultatif)"},
    {noLogo, u"Aucun logo sélectionné"},
    {chooseLogo, u"Choisir un logo…"},
    {changeLogo, u"Changer…"},
    {removeLogo, u"Retirer"},
    {logoScoreboardHint, u"S'affiche dans le tableau de score"},
    {importVideo, u"Importer une vidéo"},
    {importVideoSubtitle, u"Choisis la vidéo sur laquelle afficher le score"},
    {dropVideoHere, u"Dépose ta vidéo ici"},
    {orClickToBrowse, u"ou clique pour parcourir"},
    {changeVideo, u"Changer de vidéo"},
    {openEditor, u"Ouvrir l'éditeur"},
    {selectVideoFile, u"Sélectionner un fichier vidéo"},
    {couldNotReadDuration, u"Impossible de lire la durée de la vidéo."},
    {couldNotReadMetadata, u"Impossible de lire les métadonnées de la vidéo."},
    {sets, u"Sets"},
    {setLabel, u"Set"},
    {gameScore, u"Score du jeu"},
    {serving, u"Au service"},
    {setServe, u"Donner le service"},
    {addMarker, u"Ajouter un marqueur"},
    {addMarkerTooltip, u"Ajouter un marqueur à la position actuelle (M)"},
    {backToVideoImport, u"Retour à l'import vidéo"},
    {exportVideo, u"Exporter la vidéo"},
    {previewFrame, u"Prévisualiser l'image"},
    {generating, u"Génération…"},
    {liveScore, u"Score en direct"},
    {noConfig, u"Pas de configuration"},
    {initialScore, u"Score initial"},
    {markersSection, u"Marqueurs (%d)"},
    {importMarkersCSV, u"Importer des marqueurs CSV"},
    {importMarkersCSVTooltip, u"Importer des marqueurs depuis un fichier CSV"},
    {noMarkers, u"Aucun marqueur. Appuie sur M ou + pour en ajouter un à la position actuelle."},
    {noValidMarkersInCSV, u"Aucun marqueur valide trouvé dans le CSV."},
    {couldNotReadFile, u"Impossible de lire le fichier : %@"},
    {editMarker, u"Modifier le marqueur"},
    {addMarkerToDefineScore, u"Ajoute un marqueur pour définir le score à un instant précis."},
    {selectMarkerToEdit, u"Sélectionne un marqueur pour modifier son score."},
    {markerLabel, u"Libellé"},
    {framePreview, u"Aperçu de l'image"},
    {marker, u"Marqueur"},
    {deleteMarker, u"Supprimer le marqueur"},
    {exportVideoTitle, u"Export vidéo"},
    {noMarkersWarning, u"Aucun marqueur — le score sera statique."},
    {templateLabel, u"Template"},
    {duration, u"Durée"},
    {markers, u"Marqueurs"},
    {formatLabel, u"Format"},
    {saveTo, u"Enregistrer dans"},
    {startExport, u"Lancer l'export"},
    {exporting, u"Export en cours…"},
    {exportComplete, u"Export terminé"},
    {showInFinder, u"Afficher dans le Finder"},
    {exportFailed, u"Échec de l'export"},
    {helpTitle, u"Aide Pointloom"},
    {helpIntro, u"Pointloom ajoute des tableaux de score animés à tes vidéos de sport."},
    {helpStep0, u"Étape 1 — Choisir un sport"},
    {helpStep0Detail,
     u"Choisis le sport que tu as filmé. Seuls les templates prévus pour ce sport te seront proposés."},
    {helpStep1, u"Étape 2 — Choisir un template"},
    {helpStep1Detail, u"Choisis le style visuel de ton tableau de score. Chaque sport en propose plusieurs."},
    {helpStep2, u"Étape 3 — Configuration du match"},
    {helpStep2Detail, u"Saisis le nom des joueurs, choisis simple ou double et indique le nombre de sets."},
    {helpStep3, u"Étape 4 — Importer une vidéo"},
    {helpStep3Detail,
     u"Dépose ton fichier vidéo ou clique pour parcourir. Formats pris en charge : MP4, MOV, M4V."},
    {helpStep4, u"Étape 5 — Éditeur"},
    {helpStep4Detail,
     u"Appuie sur M ou + pour ajouter un marqueur à la position actuelle. "
     u"Définis le score de chaque marqueur. Fais glisser le tableau de score pour le déplacer. "
     u"Appuie sur ⌘⇧E pour exporter."},
    {helpCSVSection, u"Import CSV"},
    {helpCSVDetail,
     u"Importe des marqueurs depuis un fichier CSV. "
     u"Chaque ligne définit un score à un instant précis.\n\n"
     u"Format : startTime, label, servingTeam, game_team1, game_team2, set1_t1, set1_t2, …"},
    {helpTipsSection, u"Astuces"},
    {helpTipsDetail,
     u"• M ou + — Ajouter un marqueur à la position actuelle\n"
     u"• Espace — Lecture / Pause\n"
     u"• ← → — Avancer ou reculer image par image\n"
     u"• ⌘⇧E — Exporter la vidéo\n"
     u"• Fais glisser le tableau de score pour le déplacer"},
    {downloadSampleCSV, u"Télécharger un exemple CSV"},
};
// clang-format on

}

TextList french() {
    return list;
}

}
