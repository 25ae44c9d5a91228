// The title of a screen of the setup and the line under it, in the session's language.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QWidget>

namespace pointloom {

class PageHeader : public QWidget {
public:
    PageHeader(const UiContext& context, L10nKey title, L10nKey subtitle, QWidget* parent);

private:
    Bindings m_bindings;
};

}
