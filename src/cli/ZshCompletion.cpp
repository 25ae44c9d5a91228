#include "cli/ArgumentOffers.h"
#include "cli/CompletionScript.h"

#include <algorithm>
#include <sstream>

namespace pointloom::cli {

namespace {

// Within single quotes; what means something to _arguments is marked.
std::string quoted(std::string text) {
    for (const auto& [from, to] : {std::pair{"\\", "\\\\"}, {"[", "\\["}, {"]", "\\]"}, {":", "\\:"}}) {
        std::string marked;
        for (const char c : text)
            marked += c == *from ? std::string(to) : std::string(1, c);
        text = marked;
    }
    replaceAll(text, "'", "'\\''");
    return text;
}

std::string action(const CLI::Option& option) {
    const ArgumentOffer offer = offerFor(option);
    if (!offer.words.empty())
        return '(' + joined(offer.words) + ')';
    if (!offer.extensions.empty())
        return "_files -g \"*.(#i)(" + joined(offer.extensions, "|") + ")\"";
    return " ";
}

// '(-o --output)'{-o,--output}'[Where to write]:VIDEO:_files'
std::string specification(const CLI::Option& option, int& position) {
    const auto names = namesOf(option);
    const std::string value = ':' + quoted(option.get_type_name()) + ':' + action(option);
    if (names.empty())
        return '\'' + std::to_string(++position) + value + '\'';
    const std::string rest =
        "'[" + quoted(option.get_description()) + ']' + (takesValue(option) ? value : "") + '\'';
    if (names.size() == 1)
        return names.front() + rest;
    return "'(" + joined(names) + ")'{" + joined(names, ",") + '}' + rest;
}

void writeCommands(std::ostream& script, const CLI::App& app, const std::string& indent) {
    script << indent << "local -a commands=(\n";
    for (const CLI::App* subcommand : subcommandsOf(app))
        script << indent << "    '" << subcommand->get_name() << ':' << quoted(subcommand->get_description())
               << "'\n";
    script << indent << ")\n" << indent << "_describe command commands\n";
}

void writeArguments(std::ostream& script, const CLI::App& app, const std::string& indent) {
    script << indent << "_arguments -s";
    int position = 0;
    for (const CLI::Option* option : shownOptions(app))
        script << " \\\n" << indent << "    " << specification(*option, position);
    if (!subcommandsOf(app).empty())
        script << " \\\n" << indent << "    '1: :->command' \\\n" << indent << "    '*:: :->arguments'";
    script << '\n';
}

void writeSubcommand(std::ostream& script, const CLI::App& app) {
    script << "        " << app.get_name() << ")\n";
    writeArguments(script, app, "            ");
    if (!subcommandsOf(app).empty()) {
        script << "            if [[ $state == command ]]; then\n";
        writeCommands(script, app, "                ");
        script << "            fi\n";
    }
    script << "            ;;\n";
}

}

std::string zshCompletion(const CLI::App& root, const std::string& program) {
    std::string function = '_' + program;
    std::replace(function.begin(), function.end(), '-', '_');
    std::ostringstream script;
    script << "#compdef " << program << '\n' << function << "() {\n    local state line\n";
    writeArguments(script, root, "    ");
    script << "    if [[ $state == command ]]; then\n";
    writeCommands(script, root, "        ");
    script << "    elif [[ $state == arguments ]]; then\n        case $line[1] in\n";
    for (const CLI::App* subcommand : subcommandsOf(root))
        writeSubcommand(script, *subcommand);
    // Sourced, it registers itself; found on zsh's path, it is called by the name of its file.
    script << "        esac\n    fi\n}\n"
           << "if [[ $funcstack[1] == " << '_' << program << " ]]; then " << function
           << " \"$@\"; else compdef " << function << ' ' << program << "; fi\n";
    return script.str();
}

}
