// The words of the export sheet and the frame preview that the shared table does not have.
#pragma once

#include "export/ExportSettings.h"
#include "l10n/UiText.h"

namespace pointloom::ExportTexts {

// clang-format off
constexpr UiText sizeHeading{"Size", "Taille", "Tamaño", "Dimensioni", "Größe", "Storlek", "Tamanho"};
constexpr UiText sameAsSource{"As filmed", "Comme filmé", "Como se grabó", "Come girato", "Wie gefilmt", "Som filmat", "Como filmado"};
constexpr UiText youtubeUse{"Sharp on big screens", "Net sur grand écran", "Nítido en pantallas grandes", "Nitido sui grandi schermi", "Scharf auf großen Schirmen", "Skarp på stora skärmar", "Nítido em ecrãs grandes"};
constexpr UiText twitterUse{"Quick to share", "Vite partagé", "Rápido de compartir", "Veloce da condividere", "Schnell geteilt", "Snabb att dela", "Rápido de partilhar"};
constexpr UiText instagramUse{"For phones, upright", "Pour mobile, vertical", "Para el móvil, vertical", "Per telefono, verticale", "Fürs Handy, hochkant", "För mobilen, stående", "Para telemóvel, vertical"};
constexpr UiText h264Use{"Plays everywhere", "Lisible partout", "Se reproduce en todas partes", "Si apre ovunque", "Läuft überall", "Spelas överallt", "Funciona em todo o lado"};
constexpr UiText hevcUse{"Smaller files, newer players", "Fichiers plus légers, lecteurs récents", "Archivos más pequeños, reproductores recientes", "File più piccoli, lettori recenti", "Kleinere Dateien, neuere Geräte", "Mindre filer, nyare spelare", "Ficheiros menores, leitores recentes"};
constexpr UiText proresUse{"For further editing, very large", "Pour le montage, très lourd", "Para seguir editando, muy grande", "Per il montaggio, molto grande", "Zum Weiterschneiden, sehr groß", "För vidare redigering, mycket stor", "Para continuar a editar, muito grande"};

constexpr UiText watermarkHeading{"Watermark", "Filigrane", "Marca de agua", "Filigrana", "Wasserzeichen", "Vattenstämpel", "Marca de água"};
constexpr UiText watermarkNone{"No picture", "Aucune image", "Sin imagen", "Nessuna immagine", "Kein Bild", "Ingen bild", "Sem imagem"};
constexpr UiText watermarkUnreadable{"This picture cannot be read and is left out.", "Cette image est illisible et sera omise.", "Esta imagen no se puede leer y se omitirá.", "Questa immagine non è leggibile e sarà omessa.", "Dieses Bild ist nicht lesbar und bleibt weg.", "Bilden går inte att läsa och utelämnas.", "Esta imagem não pode ser lida e será omitida."};
constexpr UiText choosePicture{"Choose…", "Choisir…", "Elegir…", "Scegli…", "Wählen…", "Välj…", "Escolher…"};
constexpr UiText changePicture{"Change the watermark", "Changer le filigrane", "Cambiar la marca de agua", "Cambia la filigrana", "Wasserzeichen ändern", "Byt vattenstämpel", "Alterar a marca de água"};
constexpr UiText removePicture{"Remove the watermark", "Retirer le filigrane", "Quitar la marca de agua", "Rimuovi la filigrana", "Wasserzeichen entfernen", "Ta bort vattenstämpeln", "Remover a marca de água"};
constexpr UiText chooseWatermark{"Choose a Watermark", "Choisir un filigrane", "Elegir una marca de agua", "Scegli una filigrana", "Wasserzeichen wählen", "Välj en vattenstämpel", "Escolher uma marca de água"};
constexpr UiText pictureFiles{"Pictures", "Images", "Imágenes", "Immagini", "Bilder", "Bilder", "Imagens"};
constexpr UiText topLeft{displayName(WatermarkCorner::topLeft), "En haut à gauche", "Arriba a la izquierda", "In alto a sinistra", "Oben links", "Uppe till vänster", "Em cima à esquerda"};
constexpr UiText topRight{displayName(WatermarkCorner::topRight), "En haut à droite", "Arriba a la derecha", "In alto a destra", "Oben rechts", "Uppe till höger", "Em cima à direita"};
constexpr UiText bottomLeft{displayName(WatermarkCorner::bottomLeft), "En bas à gauche", "Abajo a la izquierda", "In basso a sinistra", "Unten links", "Nere till vänster", "Em baixo à esquerda"};
constexpr UiText bottomRight{displayName(WatermarkCorner::bottomRight), "En bas à droite", "Abajo a la derecha", "In basso a destra", "Unten rechts", "Nere till höger", "Em baixo à direita"};

constexpr UiText range{"Range", "Plage", "Intervalo", "Intervallo", "Bereich", "Intervall", "Intervalo"};
constexpr UiText wholeClip{"Whole clip", "Tout le clip", "Clip entero", "Tutto il video", "Ganzer Clip", "Hela klippet", "Vídeo inteiro"};
constexpr UiText unlicensed{"Unlicensed exports carry a mark.", "Sans licence, la vidéo porte une marque.", "Sin licencia, el vídeo lleva una marca.", "Senza licenza il video porta un marchio.", "Ohne Lizenz trägt das Video ein Zeichen.", "Utan licens får videon en märkning.", "Sem licença, o vídeo leva uma marca."};
constexpr UiText enterLicence{"Licence…", "Licence…", "Licencia…", "Licenza…", "Lizenz…", "Licens…", "Licença…"};

constexpr UiText chooseDestination{"Save the Video As", "Enregistrer la vidéo sous", "Guardar el vídeo como", "Salva il video come", "Video speichern unter", "Spara videon som", "Guardar o vídeo como"};
constexpr UiText changeDestination{"Change…", "Changer…", "Cambiar…", "Cambia…", "Ändern…", "Ändra…", "Alterar…"};
constexpr UiText spaceLine{"about %1, %2 free", "environ %1, %2 libres", "unos %1, %2 libres", "circa %1, %2 liberi", "etwa %1, %2 frei", "cirka %1, %2 ledigt", "cerca de %1, %2 livres"};
constexpr UiText freeLine{"%1 free", "%1 libres", "%1 libres", "%1 liberi", "%1 frei", "%1 ledigt", "%1 livres"};
constexpr UiText spaceShort{"Space may run out: about %1 needed, %2 free", "La place risque de manquer : environ %1 requis, %2 libres", "Puede faltar espacio: unos %1 necesarios, %2 libres", "Lo spazio può mancare: servono circa %1, %2 liberi", "Der Platz könnte fehlen: etwa %1 nötig, %2 frei", "Utrymmet kan ta slut: cirka %1 behövs, %2 ledigt", "O espaço pode faltar: cerca de %1 necessários, %2 livres"};
constexpr UiText videoFile{"Video", "Vidéo", "Vídeo", "Video", "Video", "Video", "Vídeo"};

constexpr UiText replaceTitle{"Replace the File?", "Remplacer le fichier ?", "¿Reemplazar el archivo?", "Sostituire il file?", "Datei ersetzen?", "Ersätta filen?", "Substituir o ficheiro?"};
constexpr UiText replaceMessage{"“%1” already exists. Exporting replaces it.", "« %1 » existe déjà. L'export le remplace.", "«%1» ya existe. La exportación lo reemplaza.", "«%1» esiste già. L'esportazione lo sostituisce.", "„%1“ gibt es schon. Der Export ersetzt sie.", "”%1” finns redan. Exporten ersätter den.", "“%1” já existe. A exportação substitui-o."};
constexpr UiText replaceConfirm{"Replace", "Remplacer", "Reemplazar", "Sostituisci", "Ersetzen", "Ersätt", "Substituir"};
constexpr UiText stopTitle{"Stop the Export?", "Arrêter l'export ?", "¿Detener la exportación?", "Interrompere l'esportazione?", "Export abbrechen?", "Avbryta exporten?", "Parar a exportação?"};
constexpr UiText stopMessage{"What has been written so far is removed.", "Ce qui est déjà écrit sera supprimé.", "Se borra lo escrito hasta ahora.", "Quanto scritto finora viene rimosso.", "Was schon geschrieben ist, wird gelöscht.", "Det som redan skrivits tas bort.", "O que já foi escrito será removido."};
constexpr UiText stopConfirm{"Stop", "Arrêter", "Detener", "Interrompi", "Beenden", "Stoppa", "Parar"};
constexpr UiText keepExporting{"Keep exporting", "Continuer l'export", "Seguir exportando", "Continua a esportare", "Weiter exportieren", "Fortsätt exportera", "Continuar a exportar"};

constexpr UiText progressFrames{"%1 of %2 frames", "%1 images sur %2", "%1 de %2 fotogramas", "%1 di %2 fotogrammi", "%1 von %2 Bildern", "%1 av %2 bildrutor", "%1 de %2 fotogramas"};
constexpr UiText framesPerSecond{"%1 fps", "%1 im./s", "%1 fps", "%1 fps", "%1 Bilder/s", "%1 bilder/s", "%1 fps"};
constexpr UiText timeLeft{"%1 left", "reste %1", "quedan %1", "ancora %1", "noch %1", "%1 kvar", "faltam %1"};
constexpr UiText preparing{"Preparing…", "Préparation…", "Preparando…", "Preparazione…", "Wird vorbereitet…", "Förbereder…", "A preparar…"};
constexpr UiText finishing{"Finishing the file…", "Finalisation du fichier…", "Terminando el archivo…", "Completamento del file…", "Datei wird abgeschlossen…", "Avslutar filen…", "A terminar o ficheiro…"};
constexpr UiText stopping{"Stopping…", "Arrêt…", "Deteniendo…", "Interruzione…", "Wird abgebrochen…", "Stoppar…", "A parar…"};
constexpr UiText progressName{"Export progress", "Progression de l'export", "Progreso de la exportación", "Avanzamento dell'esportazione", "Exportfortschritt", "Exportförlopp", "Progresso da exportação"};

constexpr UiText damagedPictures{"Damaged pictures in the video: %1", "Images abîmées dans la vidéo : %1", "Imágenes dañadas en el vídeo: %1", "Immagini danneggiate nel video: %1", "Beschädigte Bilder im Video: %1", "Skadade bilder i videon: %1", "Imagens danificadas no vídeo: %1"};
constexpr UiText endMissing{"Missing at the end of the video: %1 s", "Manque à la fin de la vidéo : %1 s", "Falta al final del vídeo: %1 s", "Manca alla fine del video: %1 s", "Am Ende des Videos fehlen: %1 s", "Saknas i slutet av videon: %1 s", "Falta no fim do vídeo: %1 s"};

constexpr UiText softwareUsed{"%1 did not work; the video was encoded in software.", "%1 n'a pas fonctionné ; la vidéo a été encodée par logiciel.", "%1 no funcionó; el vídeo se codificó por software.", "%1 non ha funzionato; il video è stato codificato via software.", "%1 ging nicht; das Video wurde per Software kodiert.", "%1 fungerade inte; videon kodades med programvara.", "%1 não funcionou; o vídeo foi codificado por software."};

constexpr UiText play{"Play", "Lire", "Reproducir", "Riproduci", "Abspielen", "Spela upp", "Reproduzir"};
constexpr UiText exportAnother{"Export another", "Nouvel export", "Exportar otro", "Esporta altro", "Weiterer Export", "Exportera en till", "Exportar outro"};
constexpr UiText changeOptions{"Change options", "Modifier les options", "Cambiar opciones", "Cambia opzioni", "Optionen ändern", "Ändra val", "Alterar opções"};

constexpr UiText videoMissing{"The video “%1” is no longer there. Put it back where it was, or choose another video.", "La vidéo « %1 » n'est plus là. Remets-la à sa place ou choisis-en une autre.", "El vídeo «%1» ya no está. Devuélvelo a su sitio o elige otro.", "Il video «%1» non c'è più. Rimettilo al suo posto o scegline un altro.", "Das Video „%1“ ist nicht mehr da. Leg es zurück oder wähle ein anderes.", "Videon ”%1” finns inte längre. Lägg tillbaka den eller välj en annan.", "O vídeo “%1” já não está lá. Repõe-no no lugar ou escolhe outro."};
constexpr UiText folderMissing{"The folder “%1” is not there.", "Le dossier « %1 » n'existe pas.", "La carpeta «%1» no existe.", "La cartella «%1» non esiste.", "Den Ordner „%1“ gibt es nicht.", "Mappen ”%1” finns inte.", "A pasta “%1” não existe."};
constexpr UiText folderUnwritable{"Nothing can be written to the folder “%1”.", "Impossible d'écrire dans le dossier « %1 ».", "No se puede escribir en la carpeta «%1».", "Non si può scrivere nella cartella «%1».", "In den Ordner „%1“ kann nichts geschrieben werden.", "Det går inte att skriva i mappen ”%1”.", "Não é possível escrever na pasta “%1”."};
constexpr UiText replacesVideo{"The export would replace the match video. Choose another name.", "L'export remplacerait la vidéo du match. Choisis un autre nom.", "La exportación reemplazaría el vídeo del partido. Elige otro nombre.", "L'esportazione sostituirebbe il video della partita. Scegli un altro nome.", "Der Export würde das Spielvideo ersetzen. Wähle einen anderen Namen.", "Exporten skulle ersätta matchvideon. Välj ett annat namn.", "A exportação substituiria o vídeo do jogo. Escolhe outro nome."};
constexpr UiText notReady{"There is no video to export yet.", "Il n'y a pas encore de vidéo à exporter.", "Aún no hay vídeo que exportar.", "Non c'è ancora un video da esportare.", "Es gibt noch kein Video zum Exportieren.", "Det finns ingen video att exportera än.", "Ainda não há vídeo para exportar."};

constexpr UiText actualSize{"Actual size", "Taille réelle", "Tamaño real", "Dimensioni reali", "Originalgröße", "Verklig storlek", "Tamanho real"};
constexpr UiText savePicture{"Save picture…", "Enregistrer l'image…", "Guardar imagen…", "Salva immagine…", "Bild speichern…", "Spara bild…", "Guardar imagem…"};
constexpr UiText close{"Close", "Fermer", "Cerrar", "Chiudi", "Schließen", "Stäng", "Fechar"};
constexpr UiText couldNotSavePicture{"The picture could not be saved: %1", "L'image n'a pas pu être enregistrée : %1", "No se pudo guardar la imagen: %1", "Non è stato possibile salvare l'immagine: %1", "Das Bild konnte nicht gespeichert werden: %1", "Bilden kunde inte sparas: %1", "Não foi possível guardar a imagem: %1"};
constexpr UiText exportedFrame{"The frame as it is exported", "L'image telle qu'exportée", "El fotograma tal como se exporta", "Il fotogramma come viene esportato", "Das Bild, wie es exportiert wird", "Bildrutan som den exporteras", "O fotograma como é exportado"};
// clang-format on

constexpr const UiText& nameOf(WatermarkCorner corner) {
    switch (corner) {
    case WatermarkCorner::topLeft:
        return topLeft;
    case WatermarkCorner::topRight:
        return topRight;
    case WatermarkCorner::bottomLeft:
        return bottomLeft;
    case WatermarkCorner::bottomRight:
        break;
    }
    return bottomRight;
}

constexpr const UiText& useOf(ExportFormat format) {
    switch (format) {
    case ExportFormat::h264:
        return h264Use;
    case ExportFormat::hevc:
        return hevcUse;
    case ExportFormat::prores:
        break;
    }
    return proresUse;
}

constexpr const UiText& useOf(ExportPreset preset) {
    switch (preset) {
    case ExportPreset::original:
        return sameAsSource;
    case ExportPreset::youtube4k:
        return youtubeUse;
    case ExportPreset::twitter1080p:
        return twitterUse;
    case ExportPreset::instagram916:
        break;
    }
    return instagramUse;
}

}
