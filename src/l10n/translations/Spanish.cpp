#include "l10n/translations/TextList.h"

namespace pointloom::texts {

namespace {

using enum L10nKey;

// clang-format off
constexpr Text list[] = {
    {continueBtn, u"Continuar"},
    {back, u"Atrás"},
    {cancel, u"Cancelar"},
    {done, u"Listo"},
    {retry, u"Reintentar"},
    {reset, u"Restablecer"},
    {remove, u"Quitar"},
    {optional_, u"Opcional"},
    {resetTooltip, u"Empezar desde cero"},
    {resetDialogTitle, u"¿Empezar de nuevo?"},
    {resetDialogMessage, u"Se borrarán todos los datos."},
    {resetConfirm, u"Empezar de nuevo"},
    {chooseSport, u"Elige un deporte"},
    {chooseSportSubtitle, u"Selecciona el deporte que estás grabando."},
    {templatesCount, u"%d plantillas"},
    {chooseTemplate, u"Elige una plantilla"},
    {chooseTemplateSubtitle, u"Selecciona el estilo visual de tu marcador"},
    {selectTemplateToContinue, u"Selecciona una plantilla para continuar"},
    {matchConfig, u"Configuración del partido"},
    {matchConfigSubtitle, u"Indica los nombres de los jugadores y el formato del partido"},
    {matchFormat, u"Formato del partido"},
    {singles, u"Individuales"},
    {doubles, u"Dobles"},
    {numberOfSets, u"Número de sets"},
    {oneSet, u"1 set"},
    {bestOf3, u"Al mejor de 3"},
    {bestOf5, u"Al mejor de 5"},
    {team1, u"Equipo 1"},
    {team2, u"Equipo 2"},
    {playerName, u"Nombre del jugador"},
    {player1, u"Jugador 1"},
    {player2, u"Jugador 2"},
    {flag, u"Bandera (ej. FR, US)"},
    {player2Flag, u"Bandera del jugador 2 (ej. FR, US)"},
    {egDravnik, u"ej. Dravnik"},
    {egSolvane, u"ej. Solvane"},
    {egAlbaret, u"ej. Albaret"},
    {egNavorro, u"ej. Navorro"},
    {fillNamesToContinue, u"Escribe el nombre de todos los jugadores para continuar"},
    {logoOptional, u"Logo del club / torneo (opcional)"},
    {noLogo, u"Ningún logo seleccionado"},
    {chooseLogo, u"Elegir logo…"},
    {changeLogo, u"Cambiar…"},
    {removeLogo, u"Quitar"},
    {logoScoreboardHint, u"Aparece en el marcador sobreimpreso"},
    {importVideo, u"Importa el vídeo"},
    {importVideoSubtitle, u"Selecciona el vídeo al que quieres añadir el marcador"},
    {dropVideoHere, u"Suelta aquí tu vídeo"},
    {orClickToBrowse, u"o haz clic para buscarlo"},
    {changeVideo, u"Cambiar vídeo"},
    {openEditor, u"Abrir el editor"},
    {selectVideoFile, u"Selecciona un archivo de vídeo"},
    {couldNotReadDuration, u"No se pudo leer la duración del vídeo."},
    {couldNotReadMetadata, u"No se pudieron leer los metadatos del vídeo."},
    {sets, u"Sets"},
    {setLabel, u"Set"},
    {gameScore, u"Puntos del juego"},
    {serving, u"Al saque"},
    {setServe, u"Dar el saque"},
    {addMarker, u"Añadir marcador"},
    {addMarkerTooltip, u"Añadir un marcador en el instante actual (M)"},
    {backToVideoImport, u"Volver a la importación del vídeo"},
    {exportVideo, u"Exportar vídeo"},
    {previewFrame, u"Previsualizar fotograma"},
    {generating, u"Generando…"},
    {liveScore, u"Resultado en directo"},
    {noConfig, u"Sin configuración"},
    {initialScore, u"Resultado inicial"},
    {markersSection, u"Marcadores (%d)"},
    {importMarkersCSV, u"Importar marcadores CSV"},
    {importMarkersCSVTooltip, u"Importar marcadores desde un CSV"},
    {noMarkers, u"No hay marcadores. Pulsa M o + para añadir uno en el instante actual."},
    {noValidMarkersInCSV, u"No se encontraron marcadores válidos en el CSV."},
    {couldNotReadFile, u"No se pudo leer el archivo: %@"},
    {editMarker, u"Editar marcador"},
    {addMarkerToDefineScore, u"Añade un marcador para definir el resultado en un momento concreto."},
    {selectMarkerToEdit, u"Selecciona un marcador para editar su resultado."},
    {markerLabel, u"Etiqueta"},
    {framePreview, u"Vista previa del fotograma"},
    {marker, u"Marcador"},
    {deleteMarker, u"Eliminar marcador"},
    {exportVideoTitle, u"Exportar el vídeo"},
    {noMarkersWarning, u"Sin marcadores — el marcador será estático."},
    {templateLabel, u"Plantilla"},
    {duration, u"Duración"},
    {markers, u"Marcadores"},
    {formatLabel, u"Formato"},
    {saveTo, u"Guardar en"},
    {startExport, u"Iniciar exportación"},
    {exporting, u"Exportando…"},
    {exportComplete, u"Exportación completada"},
    {showInFinder, u"Mostrar en el Finder"},
    {exportFailed, u"Error al exportar"},
    {helpTitle, u"Ayuda de Pointloom"},
    {helpIntro, u"Pointloom añade marcadores animados a tus vídeos deportivos."},
    {helpStep0, u"Paso 1 — Elige un deporte"},
    {helpStep0Detail,
     u"Selecciona el deporte que has grabado. Solo verás las plantillas disponibles para ese deporte."},
    {helpStep1, u"Paso 2 — Elige una plantilla"},
    {helpStep1Detail, u"Elige el estilo visual de tu marcador. Cada deporte ofrece varios estilos."},
    {helpStep2, u"Paso 3 — Configuración del partido"},
    {helpStep2Detail,
     u"Escribe los nombres de los jugadores, elige individuales o dobles e indica el número de sets."},
    {helpStep3, u"Paso 4 — Importa el vídeo"},
    {helpStep3Detail,
     u"Suelta tu archivo de vídeo o haz clic para buscarlo. Formatos compatibles: MP4, MOV, M4V."},
    {helpStep4, u"Paso 5 — Editor"},
    {helpStep4Detail,
     u"Pulsa M o + para añadir un marcador en el instante actual. "
     u"Define el resultado de cada marcador. "
     u"Arrastra el marcador sobreimpreso para cambiarlo de sitio. Pulsa ⌘⇧E para exportar."},
    {helpCSVSection, u"Importación CSV"},
    {helpCSVDetail,
     u"Importa marcadores desde un archivo CSV. "
     u"Cada fila define un resultado en un momento concreto.\n\n"
     u"Formato: startTime, label, servingTeam, game_team1, game_team2, set1_t1, set1_t2, …"},
    {helpTipsSection, u"Consejos"},
    {helpTipsDetail,
     u"• M o + — Añadir un marcador en el instante actual\n"
     u"• Espacio — Reproducir / Pausar\n"
     u"• ← → — Avanzar o retroceder fotograma a fotograma\n"
     u"• ⌘⇧E — Exportar el vídeo\n"
     u"• Arrastra el marcador sobreimpreso para cambiarlo de sitio"},
    {downloadSampleCSV, u"Descargar CSV de ejemplo"},
};
// clang-format on

}

TextList spanish() {
    return list;
}

}
