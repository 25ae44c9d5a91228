// Where to save a new file, with the ending that belongs to it.
#pragma once

#include "ui/common/UiContext.h"

namespace pointloom {

/// Asks for a file to save as, offering files that end in `ending`, such as ".plp". A name that ends
/// otherwise gets it added, however many dots it has; should that be the name of a file already there, which
/// the dialog did not ask about, this asks. Empty when the person would rather not.
std::optional<QString> chooseFileToSave(const UiContext& context, QWidget* parent, const QString& title,
                                        const QString& proposedName, const QString& filter,
                                        const QString& ending);

}
