#include "cli/ArgumentOffers.h"
#include "cli/CompletionScript.h"

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

std::string offerWords(const std::vector<std::string>& words) {
    return "_POINTLOOM__words '" + joined(words) + '\'';
}

std::string shellOffer(const CLI::Option& option) {
    const ArgumentOffer offer = offerFor(option);
    if (!offer.words.empty())
        return offerWords(offer.words);
    if (!offer.extensions.empty())
        return "_POINTLOOM__files '" + joined(offer.extensions) + '\'';
    return ":";
}

// One case for each option that takes a value; then the options, after a dash; else what stands alone.
void writeCase(std::ostream& script, const CLI::App& app, const std::string& label) {
    std::vector<std::string> optionNames;
    std::string alone = ":";
    script << "    " << label << ")\n        case $previous in\n";
    for (const CLI::Option* option : shownOptions(app)) {
        const auto names = namesOf(*option);
        if (names.empty())
            alone = shellOffer(*option);
        else if (takesValue(*option))
            script << "        " << joined(names, "|") << ") " << shellOffer(*option) << "; return ;;\n";
        optionNames.insert(optionNames.end(), names.begin(), names.end());
    }
    std::vector<std::string> subcommandNames;
    for (const CLI::App* subcommand : subcommandsOf(app))
        subcommandNames.push_back(subcommand->get_name());
    if (!subcommandNames.empty())
        alone = offerWords(subcommandNames);
    script << "        esac\n"
           << "        if [[ $current == -* ]]; then " << offerWords(optionNames) << "; else " << alone
           << "; fi ;;\n";
}

}

std::string bashCompletion(const CLI::App& root, const std::string& program) {
    std::ostringstream script;
    script << scriptHead;
    writeCase(script, root, "''");
    for (const CLI::App* subcommand : subcommandsOf(root))
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
