// Finds the template for an identifier.
#pragma once

#include "render/ScoreboardTemplate.h"

#include <memory>
#include <vector>

namespace pointloom::TemplateRegistry {

/// One instance of every template, in catalogue order, made on first use.
const std::vector<std::unique_ptr<const ScoreboardTemplate>>& all();

/// The template with that identifier. Every identifier has one.
const ScoreboardTemplate& templateFor(TemplateID id);

}
