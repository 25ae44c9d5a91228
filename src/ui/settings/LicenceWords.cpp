#include "ui/settings/LicenceWords.h"

#include "l10n/Format.h"
#include "l10n/UiText.h"

namespace pointloom::LicenceWords {

namespace {

// clang-format off
constexpr UiText unlicensed{
    "This copy is not licensed. Exported videos carry a licence watermark.",
    "Cette copie n'a pas de licence. Les vidéos exportées portent un filigrane de licence.",
    "Esta copia no tiene licencia. Los vídeos exportados llevan una marca de agua de licencia.",
    "Questa copia non ha una licenza. I video esportati portano una filigrana di licenza.",
    "Diese Kopie ist nicht lizenziert. Exportierte Videos tragen ein Lizenz-Wasserzeichen.",
    "Den här kopian saknar licens. Exporterade videor får en licensvattenstämpel.",
    "Esta cópia não tem licença. Os vídeos exportados levam uma marca de água de licença."};
constexpr UiText unread{
    "The licence could not be read yet. Until then exported videos carry a licence watermark.",
    "La licence n'a pas encore pu être lue. D'ici là, les vidéos exportées portent un filigrane de licence.",
    "La licencia aún no se ha podido leer. Hasta entonces los vídeos exportados llevan una marca de agua de licencia.",
    "La licenza non è ancora stata letta. Fino ad allora i video esportati portano una filigrana di licenza.",
    "Die Lizenz konnte noch nicht gelesen werden. Bis dahin tragen exportierte Videos ein Lizenz-Wasserzeichen.",
    "Licensen har inte kunnat läsas än. Tills dess får exporterade videor en licensvattenstämpel.",
    "A licença ainda não pôde ser lida. Até lá, os vídeos exportados levam uma marca de água de licença."};
constexpr UiText licensed{
    "Licensed to %@.", "Licence accordée à %@.", "Licencia de %@.", "Licenza di %@.", "Lizenziert für %@.",
    "Licensierad till %@.", "Licença de %@."};
constexpr UiText licensedUntil{
    "Valid until %@.", "Valable jusqu'au %@.", "Válida hasta el %@.", "Valida fino al %@.", "Gültig bis %@.",
    "Gäller till %@.", "Válida até %@."};
constexpr UiText expired{
    "The licence of %@ has run out.", "La licence de %@ a expiré.", "La licencia de %@ ha caducado.",
    "La licenza di %@ è scaduta.", "Die Lizenz von %@ ist abgelaufen.", "Licensen för %@ har gått ut.",
    "A licença de %@ expirou."};
constexpr UiText otherMachine{
    "The licence of %@ was activated on another machine. Activate the key on this one.",
    "La licence de %@ a été activée sur une autre machine. Active la clé sur celle-ci.",
    "La licencia de %@ se activó en otro equipo. Activa la clave en este.",
    "La licenza di %@ è stata attivata su un altro computer. Attiva la chiave su questo.",
    "Die Lizenz von %@ wurde auf einem anderen Rechner aktiviert. Aktiviere den Schlüssel auf diesem.",
    "Licensen för %@ aktiverades på en annan dator. Aktivera nyckeln på den här.",
    "A licença de %@ foi ativada noutra máquina. Ativa a chave nesta."};
constexpr UiText clockBehind{
    "The clock of this computer is behind; please set it.",
    "L'horloge de cet ordinateur retarde ; mets-la à l'heure.",
    "El reloj de este equipo va atrasado; ponlo en hora.",
    "L'orologio di questo computer è indietro; regolalo.",
    "Die Uhr dieses Rechners geht nach; bitte stelle sie.",
    "Datorns klocka går efter; ställ den.",
    "O relógio deste computador está atrasado; acerta-o."};

constexpr UiText malformedKey{
    "This is not a complete licence key.", "Ce n'est pas une clé de licence complète.", "Esto no es una clave de licencia completa.",
    "Questa non è una chiave di licenza completa.", "Das ist kein vollständiger Lizenzschlüssel.",
    "Det här är ingen fullständig licensnyckel.", "Isto não é uma chave de licença completa."};
constexpr UiText unknownKey{
    "The licence service does not know this key.", "Le service de licences ne connaît pas cette clé.",
    "El servicio de licencias no conoce esta clave.", "Il servizio licenze non conosce questa chiave.",
    "Der Lizenzdienst kennt diesen Schlüssel nicht.", "Licenstjänsten känner inte till den här nyckeln.",
    "O serviço de licenças não conhece esta chave."};
constexpr UiText limitReached{
    "This key is in use on as many machines as it was bought for. Give it back on one of them first.",
    "Cette clé est utilisée sur autant de machines que prévu à l'achat. Rends-la d'abord sur l'une d'elles.",
    "Esta clave ya se usa en tantos equipos como se compraron. Devuélvela antes en uno de ellos.",
    "Questa chiave è in uso su tutti i computer acquistati. Restituiscila prima su uno di essi.",
    "Dieser Schlüssel wird schon auf so vielen Rechnern verwendet, wie gekauft wurden. Gib ihn zuerst auf einem davon zurück.",
    "Nyckeln används redan på så många datorer som den köptes för. Lämna först tillbaka den på en av dem.",
    "Esta chave já é usada em tantas máquinas quantas foram compradas. Devolve-a primeiro numa delas."};
constexpr UiText revoked{
    "This key was withdrawn by the seller.", "Cette clé a été révoquée par le vendeur.", "El vendedor ha retirado esta clave.",
    "Questa chiave è stata revocata dal venditore.", "Dieser Schlüssel wurde vom Verkäufer zurückgezogen.",
    "Säljaren har dragit tillbaka nyckeln.", "Esta chave foi revogada pelo vendedor."};
constexpr UiText ended{
    "The period of this licence is over.", "La période de cette licence est terminée.", "El periodo de esta licencia ha terminado.",
    "Il periodo di questa licenza è terminato.", "Die Laufzeit dieser Lizenz ist vorbei.", "Licensens giltighetstid är slut.",
    "O período desta licença terminou."};
constexpr UiText notActivated{
    "This machine holds no such licence.", "Cette machine ne possède pas cette licence.", "Este equipo no tiene esa licencia.",
    "Questo computer non ha questa licenza.", "Dieser Rechner hat keine solche Lizenz.", "Den här datorn har ingen sådan licens.",
    "Esta máquina não tem essa licença."};
constexpr UiText noConnection{
    "The licence service could not be reached. Check the network and try again.",
    "Le service de licences est injoignable. Vérifie le réseau et réessaie.",
    "No se pudo contactar con el servicio de licencias. Comprueba la red e inténtalo de nuevo.",
    "Impossibile raggiungere il servizio licenze. Controlla la rete e riprova.",
    "Der Lizenzdienst ist nicht erreichbar. Prüfe das Netzwerk und versuche es noch einmal.",
    "Licenstjänsten gick inte att nå. Kontrollera nätverket och försök igen.",
    "Não foi possível contactar o serviço de licenças. Verifica a rede e tenta de novo."};
constexpr UiText serviceTrouble{
    "The licence service did not answer as it should.", "Le service de licences n'a pas répondu comme prévu.",
    "El servicio de licencias no respondió como debía.", "Il servizio licenze non ha risposto come dovuto.",
    "Der Lizenzdienst hat nicht richtig geantwortet.", "Licenstjänsten svarade inte som den skulle.",
    "O serviço de licenças não respondeu como devia."};
constexpr UiText notConfigured{
    "This copy of Pointloom names no licence service.", "Cette copie de Pointloom n'indique aucun service de licences.",
    "Esta copia de Pointloom no indica ningún servicio de licencias.", "Questa copia di Pointloom non indica alcun servizio licenze.",
    "Diese Kopie von Pointloom nennt keinen Lizenzdienst.", "Den här kopian av Pointloom anger ingen licenstjänst.",
    "Esta cópia do Pointloom não indica nenhum serviço de licenças."};
constexpr UiText invalidLicence{
    "The licence is damaged or was not signed by the seller.", "La licence est endommagée ou n'a pas été signée par le vendeur.",
    "La licencia está dañada o no la firmó el vendedor.", "La licenza è danneggiata o non è firmata dal venditore.",
    "Die Lizenz ist beschädigt oder nicht vom Verkäufer signiert.", "Licensen är skadad eller inte signerad av säljaren.",
    "A licença está danificada ou não foi assinada pelo vendedor."};
constexpr UiText forOtherMachine{
    "This licence was made for another machine.", "Cette licence a été faite pour une autre machine.",
    "Esta licencia se hizo para otro equipo.", "Questa licenza è stata fatta per un altro computer.",
    "Diese Lizenz wurde für einen anderen Rechner ausgestellt.", "Licensen gjordes för en annan dator.",
    "Esta licença foi feita para outra máquina."};
constexpr UiText noMachineIdentity{
    "This system cannot be told from others, so that no licence can be tied to it.",
    "Ce système ne se distingue pas des autres ; aucune licence ne peut y être liée.",
    "Este sistema no se distingue de otros; no se le puede asociar una licencia.",
    "Questo sistema non si distingue dagli altri; non si può legare una licenza.",
    "Dieses System lässt sich nicht von anderen unterscheiden; es kann keine Lizenz erhalten.",
    "Systemet går inte att skilja från andra, så ingen licens kan knytas till det.",
    "Este sistema não se distingue de outros; nenhuma licença lhe pode ser associada."};
constexpr UiText keychain{
    "The keychain that may hold the licence could not be read. Unlock it and try again.",
    "Le trousseau qui peut contenir la licence n'a pas pu être lu. Déverrouille-le et réessaie.",
    "No se pudo leer el llavero que puede contener la licencia. Desbloquéalo e inténtalo de nuevo.",
    "Impossibile leggere il portachiavi che può contenere la licenza. Sbloccalo e riprova.",
    "Der Schlüsselbund, in dem die Lizenz liegen kann, war nicht zu lesen. Entsperre ihn und versuche es noch einmal.",
    "Nyckelringen som kan innehålla licensen gick inte att läsa. Lås upp den och försök igen.",
    "O porta-chaves que pode conter a licença não pôde ser lido. Desbloqueia-o e tenta de novo."};
constexpr UiText file{
    "The file could not be used.", "Le fichier n'a pas pu être utilisé.", "No se pudo usar el archivo.", "Impossibile usare il file.",
    "Die Datei konnte nicht verwendet werden.", "Filen kunde inte användas.", "Não foi possível usar o ficheiro."};
constexpr UiText cancelled{
    "Cancelled.", "Annulé.", "Cancelado.", "Annullato.", "Abgebrochen.", "Avbrutet.", "Cancelado."};
// clang-format on

const UiText& textOf(LicenceFault fault) {
    switch (fault) {
    case LicenceFault::malformedKey:
        return malformedKey;
    case LicenceFault::unknownKey:
        return unknownKey;
    case LicenceFault::limitReached:
        return limitReached;
    case LicenceFault::revoked:
        return revoked;
    case LicenceFault::ended:
        return ended;
    case LicenceFault::notActivated:
        return notActivated;
    case LicenceFault::noConnection:
        return noConnection;
    case LicenceFault::serviceTrouble:
        return serviceTrouble;
    case LicenceFault::notConfigured:
        return notConfigured;
    case LicenceFault::invalidLicence:
        return invalidLicence;
    case LicenceFault::otherMachine:
        return forOtherMachine;
    case LicenceFault::noMachineIdentity:
        return noMachineIdentity;
    case LicenceFault::keychainLocked:
    case LicenceFault::keychainRefused:
        return keychain;
    case LicenceFault::file:
        return file;
    case LicenceFault::cancelled:
        return cancelled;
    }
    Q_UNREACHABLE();
}

bool saysMore(LicenceFault fault) {
    return fault == LicenceFault::file || fault == LicenceFault::serviceTrouble ||
           fault == LicenceFault::noConnection;
}

QString stateOf(const LicenceStatus& status, Language language) {
    const QString holder = status.record ? status.record->holder : QString();
    switch (status.state) {
    case LicenceState::unlicensed:
        return t(language, unlicensed);
    case LicenceState::unread:
        return t(language, unread) + QStringLiteral(" (") + status.fault + u')';
    case LicenceState::expired:
        return format(t(language, expired), holder);
    case LicenceState::otherMachine:
        return format(t(language, otherMachine), holder);
    case LicenceState::invalid:
        return t(language, invalidLicence);
    case LicenceState::licensed:
        break;
    }
    QString words = format(t(language, licensed), holder);
    if (const auto& end = status.record->expires) {
        words += u' ' + format(t(language, licensedUntil),
                               localeOf(language).toString(end->toLocalTime().date(), QLocale::ShortFormat));
    }
    return words;
}

}

QString ofStatus(const LicenceStatus& status, Language language) {
    QString words = stateOf(status, language);
    if (status.isClockBehind)
        words += u' ' + t(language, clockBehind);
    return words;
}

QString ofFault(LicenceFault fault, const QString& detail, Language language) {
    if (language == Language::english)
        return detail;
    const QString words = t(language, textOf(fault));
    return saysMore(fault) ? words + QStringLiteral(" (") + detail + u')' : words;
}

}
