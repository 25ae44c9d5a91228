#include "cli/ArgumentOffers.h"

#include "cli/Arguments.h"
#include "render/TemplateID.h"

namespace pointloom::cli {

ArgumentOffer offerFor(const CLI::Option& option) {
    const std::string placeholder = option.get_type_name();
    if (placeholder.starts_with('{'))
        return {.words = CLI::detail::split(placeholder.substr(1, placeholder.size() - 2), ','),
                .extensions = {}};
    if (placeholder == templatePlaceholder)
        return {.words = rawValues<TemplateID>(), .extensions = {}};
    for (const FileKind* kind : fileKinds()) {
        if (placeholder == kind->placeholder)
            return {.words = {}, .extensions = kind->extensions};
    }
    return {};
}

std::vector<const CLI::Option*> shownOptions(const CLI::App& app) {
    std::vector<const CLI::Option*> shown;
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_group().empty()) // an option without a help group is hidden
            shown.push_back(option);
    }
    return shown;
}

std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.push_back('-' + name);
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

std::vector<const CLI::App*> subcommandsOf(const CLI::App& app) {
    return app.get_subcommands({});
}

std::string joined(const std::vector<std::string>& words, const std::string& between) {
    return CLI::detail::join(words, between);
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

}
