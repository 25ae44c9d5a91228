#include "cli/CompletionScript.h"

#include "cli/Arguments.h"
#include "render/TemplateID.h"

#include <algorithm>
#include <sstream>

namespace pointloom::cli {

namespace {

constexpr auto scriptHead = R"(_POINTLOOM__words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current")
}

_POINTLOOM__files() {
    local extension
    compopt -o filenames
    mapfile -t COMPREPLY < <(
        compgen -d -- "$current"
        for extension in $1; do
            compgen -f -X "!*.$extension" -- "$current"
            compgen -f -X "!*.${extension^^}" -- "$current"
        done)
}

_POINTLOOM_() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command= word
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word != -* ]]; then
            command=$word
            break
        fi
    done
    COMPREPLY=()
    case $command in
)";

constexpr auto scriptTail = R"(    esac
}

complete -F _POINTLOOM_ POINTLOOM
)";

// An option without a help group is hidden.
bool isShown(const CLI::Option* option) {
    return !option->get_group().empty();
}

std::vector<std::string> namesOf(const CLI::Option* option) {
    std::vector<std::string> names;
    for (const std::string& name : option->get_snames())
        names.push_back('-' + name);
    for (const std::string& name : option->get_lnames())
        names.push_back("--" + name);
    return names;
}

std::string offerWords(const std::vector<std::string>& words) {
    return "_POINTLOOM__words '" + CLI::detail::join(words, " ") + '\'';
}

// What may follow an option is told by the placeholder that help shows.
std::string offerFor(const CLI::Option* option) {
    const std::string placeholder = option->get_type_name();
    if (placeholder.starts_with('{'))
        return offerWords(CLI::detail::split(placeholder.substr(1, placeholder.size() - 2), ','));
    if (placeholder == templatePlaceholder)
        return offerWords(rawValues<TemplateID>());
    for (const FileKind* kind : fileKinds()) {
        if (placeholder == kind->placeholder)
            return "_POINTLOOM__files '" + CLI::detail::join(kind->extensions, " ") + '\'';
    }
    return ":"; // numbers and names cannot be foretold
}

// One case for each option that takes a value; then the options, after a dash; else what stands alone.
void writeCase(std::ostream& script, const CLI::App& app, const std::string& label) {
    std::vector<std::string> optionNames;
    std::string alone = ":";
    script << "    " << label << ")\n        case $previous in\n";
    for (const CLI::Option* option : app.get_options()) {
        if (!isShown(option))
            continue;
        const auto names = namesOf(option);
        if (names.empty())
            alone = offerFor(option);
        else if (option->get_expected_max() > 0) // no flag
            script << "        " << CLI::detail::join(names, "|") << ") " << offerFor(option)
                   << "; return ;;\n";
        optionNames.insert(optionNames.end(), names.begin(), names.end());
    }
    std::vector<std::string> subcommandNames;
    for (const CLI::App* subcommand : app.get_subcommands({}))
        subcommandNames.push_back(subcommand->get_name());
    if (!subcommandNames.empty())
        alone = offerWords(subcommandNames);
    script << "        esac\n"
           << "        if [[ $current == -* ]]; then " << offerWords(optionNames) << "; else " << alone
           << "; fi ;;\n";
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

}

std::string bashCompletion(const CLI::App& root, const std::string& program) {
    std::ostringstream script;
    script << scriptHead;
    writeCase(script, root, "''");
    for (const CLI::App* subcommand : root.get_subcommands({}))
        writeCase(script, *subcommand, subcommand->get_name());
    script << scriptTail;

    std::string identifier = program;
    std::replace(identifier.begin(), identifier.end(), '-', '_');
    std::string text = script.str();
    replaceAll(text, "_POINTLOOM_", '_' + identifier);
    replaceAll(text, "POINTLOOM", program);
    return text;
}

}
