// The keys of every text of the interface.
#pragma once

#include <array>
#include <QString>

// clang-format off
// One list gives both the enumeration and the names of its cases.
#define POINTLOOM_L10N_KEYS(KEY) \
    /* Buttons */ \
    KEY(continueBtn) \
    KEY(back) \
    KEY(cancel) \
    KEY(done) \
    KEY(retry) \
    KEY(reset) \
    KEY(remove) \
    KEY(optional_) \
    /* Starting over */ \
    KEY(resetTooltip) \
    KEY(resetDialogTitle) \
    KEY(resetDialogMessage) \
    KEY(resetConfirm) \
    /* Sport picker */ \
    KEY(chooseSport) \
    KEY(chooseSportSubtitle) \
    KEY(templatesCount) \
    /* Template picker */ \
    KEY(chooseTemplate) \
    KEY(chooseTemplateSubtitle) \
    KEY(selectTemplateToContinue) \
    /* Match configuration */ \
    KEY(matchConfig) \
    KEY(matchConfigSubtitle) \
    KEY(matchFormat) \
    KEY(singles) \
    KEY(doubles) \
    KEY(numberOfSets) \
    KEY(oneSet) \
    KEY(bestOf3) \
    KEY(bestOf5) \
    KEY(team1) \
    KEY(team2) \
    KEY(playerName) \
    KEY(player1) \
    KEY(player2) \
    KEY(flag) \
    KEY(player2Flag) \
    KEY(egDravnik) \
    KEY(egSolvane) \
    KEY(egAlbaret) \
    KEY(egNavorro) \
    KEY(fillNamesToContinue) \
    /* Logo */ \
    KEY(logoOptional) \
    KEY(noLogo) \
    KEY(chooseLogo) \
    KEY(changeLogo) \
    KEY(removeLogo) \
    KEY(logoScoreboardHint) \
    /* Video import */ \
    KEY(importVideo) \
    KEY(importVideoSubtitle) \
    KEY(dropVideoHere) \
    KEY(orClickToBrowse) \
    KEY(changeVideo) \
    KEY(openEditor) \
    KEY(selectVideoFile) \
    KEY(couldNotReadDuration) \
    KEY(couldNotReadMetadata) \
    /* Score editor */ \
    KEY(sets) \
    KEY(setLabel) \
    KEY(gameScore) \
    KEY(serving) \
    KEY(setServe) \
    /* Editor */ \
    KEY(addMarker) \
    KEY(addMarkerTooltip) \
    KEY(backToVideoImport) \
    KEY(exportVideo) \
    KEY(previewFrame) \
    KEY(generating) \
    KEY(liveScore) \
    KEY(noConfig) \
    KEY(initialScore) \
    /* Marker list */ \
    KEY(markersSection) \
    KEY(importMarkersCSV) \
    KEY(importMarkersCSVTooltip) \
    KEY(noMarkers) \
    KEY(noValidMarkersInCSV) \
    KEY(couldNotReadFile) \
    /* Marker editor */ \
    KEY(editMarker) \
    KEY(addMarkerToDefineScore) \
    KEY(selectMarkerToEdit) \
    KEY(markerLabel) \
    KEY(framePreview) \
    KEY(marker) \
    KEY(deleteMarker) \
    /* Export sheet */ \
    KEY(exportVideoTitle) \
    KEY(noMarkersWarning) \
    KEY(templateLabel) \
    KEY(duration) \
    KEY(markers) \
    KEY(formatLabel) \
    KEY(saveTo) \
    KEY(startExport) \
    KEY(exporting) \
    KEY(exportComplete) \
    KEY(showInFinder) \
    KEY(exportFailed) \
    /* Help sheet */ \
    KEY(helpTitle) \
    KEY(helpIntro) \
    KEY(helpStep0) \
    KEY(helpStep0Detail) \
    KEY(helpStep1) \
    KEY(helpStep1Detail) \
    KEY(helpStep2) \
    KEY(helpStep2Detail) \
    KEY(helpStep3) \
    KEY(helpStep3Detail) \
    KEY(helpStep4) \
    KEY(helpStep4Detail) \
    KEY(helpCSVSection) \
    KEY(helpCSVDetail) \
    KEY(helpTipsSection) \
    KEY(helpTipsDetail) \
    KEY(downloadSampleCSV)
// clang-format on

namespace pointloom {

enum class L10nKey {
#define POINTLOOM_L10N_CASE(name) name,
    POINTLOOM_L10N_KEYS(POINTLOOM_L10N_CASE)
#undef POINTLOOM_L10N_CASE
};

/// Every key in declaration order.
inline constexpr auto allL10nKeys = std::to_array<L10nKey>({
#define POINTLOOM_L10N_VALUE(name) L10nKey::name,
    POINTLOOM_L10N_KEYS(POINTLOOM_L10N_VALUE)
#undef POINTLOOM_L10N_VALUE
});

/// The case as it is written above, for a text that no language has.
QString caseName(L10nKey key);

}
