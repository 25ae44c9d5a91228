// The timeline's own words.
#pragma once

#include "l10n/UiText.h"

namespace pointloom::TimelineTexts {

// clang-format off
constexpr UiText timeline{"Timeline", "Timeline", "Línea de tiempo", "Timeline", "Zeitleiste", "Tidslinje", "Linha do tempo"};
constexpr UiText zoomIn{"Zoom in", "Zoom avant", "Acercar", "Ingrandisci", "Vergrößern", "Zooma in", "Ampliar"};
constexpr UiText zoomOut{"Zoom out", "Zoom arrière", "Alejar", "Riduci", "Verkleinern", "Zooma ut", "Reduzir"};
constexpr UiText fit{"Show the whole clip", "Afficher tout le clip", "Mostrar todo el clip", "Mostra tutto il clip",
    "Ganzen Clip zeigen", "Visa hela klippet", "Mostrar o clipe inteiro"};
constexpr UiText addCut{"Mark a cut", "Marquer une coupe", "Marcar un corte", "Segna un taglio", "Schnitt markieren",
    "Markera ett klipp", "Marcar um corte"};
constexpr UiText trimStart{"Start here", "Commencer ici", "Empezar aquí", "Inizia qui", "Hier beginnen", "Börja här", "Começar aqui"};
constexpr UiText trimEnd{"End here", "Terminer ici", "Terminar aquí", "Finisci qui", "Hier enden", "Sluta här", "Terminar aqui"};
constexpr UiText cut{"Cut", "Coupe", "Corte", "Taglio", "Schnitt", "Klipp", "Corte"};
constexpr UiText cutIsNote{"Cut · stays in the export", "Coupe · reste dans l’export", "Corte · queda en la exportación",
    "Taglio · resta nell’export", "Schnitt · bleibt im Export", "Klipp · blir kvar i exporten", "Corte · fica na exportação"};
constexpr UiText cutIsNoteLong{"A note for you: the export keeps this range.", "Une note pour toi\u00A0: l’export garde cette plage.",
    "Una nota para ti: la exportación conserva este tramo.", "Un promemoria: l’export mantiene questo tratto.",
    "Eine Notiz für dich: Der Export behält diesen Bereich.", "En anteckning: exporten behåller den här delen.",
    "Uma nota para ti: a exportação mantém este intervalo."};
constexpr UiText exportStart{"Export starts here", "L’export commence ici", "La exportación empieza aquí", "L’export inizia qui",
    "Hier beginnt der Export", "Exporten börjar här", "A exportação começa aqui"};
constexpr UiText exportEnd{"Export ends here", "L’export se termine ici", "La exportación termina aquí", "L’export finisce qui",
    "Hier endet der Export", "Exporten slutar här", "A exportação termina aqui"};
constexpr UiText resetHandle{"Drag to trim, double-click to reset", "Glisser pour rogner, double-cliquer pour réinitialiser",
    "Arrastra para recortar, doble clic para restablecer", "Trascina per accorciare, doppio clic per ripristinare",
    "Ziehen zum Kürzen, Doppelklick setzt zurück", "Dra för att trimma, dubbelklicka för att återställa",
    "Arrasta para aparar, duplo clique para repor"};
constexpr UiText noVideo{"Import a video to see its timeline", "Importe une vidéo pour voir sa timeline",
    "Importa un vídeo para ver su línea de tiempo", "Importa un video per vedere la timeline",
    "Importiere ein Video, um seine Zeitleiste zu sehen", "Importera en video för att se tidslinjen",
    "Importa um vídeo para ver a linha do tempo"};
// clang-format on

}
