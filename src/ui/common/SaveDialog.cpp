#include "ui/common/SaveDialog.h"

#include "l10n/Format.h"

#include <QFileInfo>

namespace pointloom {

namespace {

constexpr UiText replaceTitle{"Replace the file?",     "Remplacer le fichier ?", "¿Reemplazar el archivo?",
                              "Sostituire il file?",   "Datei ersetzen?",        "Ersätta filen?",
                              "Substituir o ficheiro?"};
constexpr UiText replaceMessage{"“%@” already exists.", "« %@ » existe déjà.", "«%@» ya existe.",
                                "«%@» esiste già.",     "„%@“ gibt es schon.", "”%@” finns redan.",
                                "“%@” já existe."};
constexpr UiText replaceConfirm{"Replace",  "Remplacer", "Reemplazar", "Sostituisci",
                                "Ersetzen", "Ersätt",    "Substituir"};

}

std::optional<QString> chooseFileToSave(const UiContext& context, QWidget* parent, const QString& title,
                                        const QString& proposedName, const QString& filter,
                                        const QString& ending) {
    const auto chosen = context.dialogs.chooseFileToSave(parent, title, proposedName, {filter});
    if (!chosen || chosen->endsWith(ending, Qt::CaseInsensitive))
        return chosen;
    const QString path = *chosen + ending;
    if (QFileInfo::exists(path) &&
        !context.dialogs.confirm(parent, context.text(replaceTitle),
                                 format(context.text(replaceMessage), QFileInfo(path).fileName()),
                                 context.text(replaceConfirm), context.text(L10nKey::cancel)))
        return std::nullopt;
    return path;
}

}
