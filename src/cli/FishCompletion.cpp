#include "cli/ArgumentOffers.h"
#include "cli/CompletionScript.h"

#include <sstream>

namespace pointloom::cli {

namespace {

std::string quoted(std::string text) {
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    return result + '\'';
}

std::string suffixes(const std::vector<std::string>& extensions) {
    std::string calls;
    for (const std::string& extension : extensions)
        calls += "(__fish_complete_suffix ." + extension + ')';
    return calls;
}

// What follows an option or stands alone; -x is a word of its own, -r any file.
std::string values(const CLI::Option& option) {
    const ArgumentOffer offer = offerFor(option);
    if (!offer.words.empty())
        return " -x -a " + quoted(joined(offer.words));
    if (!offer.extensions.empty())
        return " -x -k -a " + quoted(suffixes(offer.extensions));
    return " -x";
}

void writeOption(std::ostream& script, const CLI::Option& option, const std::string& start) {
    script << start;
    for (const std::string& name : option.get_snames())
        script << " -s " << name;
    for (const std::string& name : option.get_lnames())
        script << " -l " << name;
    if (takesValue(option))
        script << values(option);
    script << " -d " << quoted(option.get_description()) << '\n';
}

void writeApp(std::ostream& script, const CLI::App& app, const std::string& program,
              const std::string& condition) {
    const std::string start = "complete -c " + program + " -n " + quoted(condition);
    for (const CLI::App* subcommand : subcommandsOf(app))
        script << start << " -f -a " << subcommand->get_name() << " -d "
               << quoted(subcommand->get_description()) << '\n';
    for (const CLI::Option* option : shownOptions(app))
        writeOption(script, *option, start);
}

}

std::string fishCompletion(const CLI::App& root, const std::string& program) {
    std::ostringstream script;
    script << "complete -c " << program << " -f\n";
    writeApp(script, root, program, "__fish_use_subcommand");
    for (const CLI::App* subcommand : subcommandsOf(root))
        writeApp(script, *subcommand, program, "__fish_seen_subcommand_from " + subcommand->get_name());
    return script.str();
}

}
