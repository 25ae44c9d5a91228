#include "ui/common/FaultText.h"

#include "l10n/Format.h"
#include "l10n/UiText.h"

namespace pointloom {

namespace {

// clang-format off
constexpr UiText cannotBeRead{"%@ cannot be read.", "%@ ne peut pas être lu.", "%@ no se puede leer.", "%@ non può essere letto.", "%@ kann nicht gelesen werden.", "%@ kan inte läsas.", "Não é possível ler %@."};
constexpr UiText missing{"%@ is not there any more: it was moved or deleted.", "%@ n'est plus là : le fichier a été déplacé ou supprimé.", "%@ ya no está: se movió o se borró.", "%@ non c'è più: è stato spostato o eliminato.", "%@ ist nicht mehr da: Die Datei wurde verschoben oder gelöscht.", "%@ finns inte kvar: filen har flyttats eller tagits bort.", "%@ já não existe: foi movido ou apagado."};
constexpr UiText notAFile{"%@ is not a video file.", "%@ n'est pas un fichier vidéo.", "%@ no es un archivo de vídeo.", "%@ non è un file video.", "%@ ist keine Videodatei.", "%@ är ingen videofil.", "%@ não é um ficheiro de vídeo."};
constexpr UiText empty{"%@ is empty.", "%@ est vide.", "%@ está vacío.", "%@ è vuoto.", "%@ ist leer.", "%@ är tom.", "%@ está vazio."};
constexpr UiText noPermission{"You are not allowed to use %@.", "Tu n'as pas le droit d'utiliser %@.", "No tienes permiso para usar %@.", "Non hai il permesso di usare %@.", "Du darfst %@ nicht verwenden.", "Du har inte behörighet till %@.", "Não tens permissão para usar %@."};
constexpr UiText notAVideo{"%@ is not an MP4 or MOV video, or it is damaged.", "%@ n'est pas une vidéo MP4 ou MOV, ou le fichier est endommagé.", "%@ no es un vídeo MP4 o MOV, o está dañado.", "%@ non è un video MP4 o MOV, oppure è danneggiato.", "%@ ist kein MP4- oder MOV-Video oder beschädigt.", "%@ är ingen MP4- eller MOV-video, eller är skadad.", "%@ não é um vídeo MP4 ou MOV, ou está danificado."};
constexpr UiText damaged{"%@ is damaged.", "%@ est endommagé.", "%@ está dañado.", "%@ è danneggiato.", "%@ ist beschädigt.", "%@ är skadad.", "%@ está danificado."};
constexpr UiText cutShort{"%@ is cut short, or its recording was never finished.", "%@ est tronqué, ou l'enregistrement n'a jamais été terminé.", "%@ está incompleto o la grabación no se terminó.", "%@ è incompleto o la registrazione non è stata terminata.", "%@ ist unvollständig oder die Aufnahme wurde nie beendet.", "%@ är ofullständig, eller så avslutades inspelningen aldrig.", "%@ está incompleto ou a gravação não chegou a terminar."};
constexpr UiText noPicture{"%@ has no video track that can be played.", "%@ ne contient aucune piste vidéo lisible.", "%@ no tiene ninguna pista de vídeo que se pueda reproducir.", "%@ non contiene una traccia video riproducibile.", "%@ enthält keine abspielbare Videospur.", "%@ har inget videospår som kan spelas.", "%@ não tem nenhuma pista de vídeo que possa ser reproduzida."};
constexpr UiText nothingInRange{"The chosen part of %@ holds no picture.", "La partie choisie de %@ ne contient aucune image.", "La parte elegida de %@ no contiene ninguna imagen.", "La parte scelta di %@ non contiene immagini.", "Der gewählte Teil von %@ enthält kein Bild.", "Den valda delen av %@ innehåller ingen bild.", "A parte escolhida de %@ não contém nenhuma imagem."};
constexpr UiText unsupportedCodec{"%@ uses a video format that is not supported.", "%@ utilise un format vidéo qui n'est pas pris en charge.", "%@ usa un formato de vídeo que no es compatible.", "%@ usa un formato video non supportato.", "%@ verwendet ein Videoformat, das nicht unterstützt wird.", "%@ använder ett videoformat som inte stöds.", "%@ usa um formato de vídeo que não é suportado."};
constexpr UiText replaced{"%@ was changed by another program.", "%@ a été modifié par un autre programme.", "Otro programa ha cambiado %@.", "%@ è stato modificato da un altro programma.", "%@ wurde von einem anderen Programm verändert.", "%@ har ändrats av ett annat program.", "%@ foi alterado por outro programa."};
constexpr UiText diskFull{"The disk is full. Free some space, or choose another place.", "Le disque est plein. Libère de la place ou choisis un autre endroit.", "El disco está lleno. Libera espacio o elige otro lugar.", "Il disco è pieno. Libera spazio o scegli un altro posto.", "Der Datenträger ist voll. Schaff Platz oder wähle einen anderen Ort.", "Disken är full. Frigör utrymme eller välj en annan plats.", "O disco está cheio. Liberta espaço ou escolhe outro local."};
// clang-format on

struct Sentence {
    const UiText& text;
    bool saysAll; // the reason would only repeat it
};

Sentence sentenceFor(media::MediaFault fault) {
    using media::MediaFault;
    switch (fault) {
    case MediaFault::missing:
        return {missing, true};
    case MediaFault::notAFile:
        return {notAFile, true};
    case MediaFault::empty:
        return {empty, true};
    case MediaFault::noPermission:
        return {noPermission, false};
    case MediaFault::notAVideo:
        return {notAVideo, true};
    case MediaFault::damaged:
        return {damaged, false};
    case MediaFault::cutShort:
        return {cutShort, true};
    case MediaFault::noPicture:
        return {noPicture, true};
    case MediaFault::nothingInRange:
        return {nothingInRange, false};
    case MediaFault::unsupportedCodec:
        return {unsupportedCodec, false};
    case MediaFault::replaced:
        return {replaced, true};
    case MediaFault::diskFull:
        return {diskFull, true};
    case MediaFault::other:
        break;
    }
    return {cannotBeRead, false};
}

}

FaultText faultText(media::MediaFault fault, const QString& fileName, const QString& reason,
                    Language language) {
    const Sentence sentence = sentenceFor(fault);
    return {format(t(language, sentence.text), fileName), sentence.saysAll ? QString() : reason};
}

}
