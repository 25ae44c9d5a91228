#include "render/TemplateID.h"
