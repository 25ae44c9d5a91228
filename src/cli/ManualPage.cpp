#include "cli/ManualPage.h"

#include "cli/ArgumentOffers.h"

#include <algorithm>
#include <sstream>

namespace pointloom::cli {

namespace {

// Text is UTF-8; dashes of options are to stay dashes, and a line must not begin like a request.
std::string roff(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else if ((c == '.' || c == '\'') && (result.empty() || result.back() == '\n'))
            result += std::string("\\&") + c;
        else
            result += c;
    }
    return result;
}

std::string bold(const std::string& text) {
    return "\\fB" + roff(text) + "\\fR";
}

std::string italic(const std::string& text) {
    return "\\fI" + roff(text) + "\\fR";
}

// "{a,b}" with its choices in bold, or a placeholder.
std::string value(const CLI::Option& option) {
    const std::string placeholder = option.get_type_name();
    const ArgumentOffer offer = offerFor(option);
    if (!placeholder.starts_with('{'))
        return italic(placeholder);
    std::string choices;
    for (const std::string& word : offer.words)
        choices += (choices.empty() ? "" : "|") + bold(word);
    return choices;
}

void writeOption(std::ostream& page, const CLI::Option& option) {
    std::string names;
    for (const std::string& name : namesOf(option))
        names += (names.empty() ? "" : ", ") + bold(name);
    if (takesValue(option))
        names += (names.empty() ? "" : " ") + value(option);
    page << ".TP\n" << names << '\n' << roff(option.get_description());
    if (!option.get_default_str().empty())
        page << ". Default: " << bold(option.get_default_str());
    page << '\n';
}

std::string synopsis(const CLI::App& app, const std::string& words) {
    std::string line = bold(words);
    if (!subcommandsOf(app).empty())
        return line + ' ' + italic("COMMAND") + " ...";
    for (const CLI::Option* option : shownOptions(app)) {
        if (namesOf(*option).empty())
            line += ' ' + italic(option->get_type_name());
        else if (option->get_required())
            line += ' ' + bold(namesOf(*option).front()) + ' ' + value(*option);
    }
    return line + " [" + italic("OPTIONS") + ']';
}

// A footer's examples are indented by two blanks and kept line by line.
void writeFooter(std::ostream& page, const std::string& footer) {
    bool isExample = false;
    if (!footer.empty())
        page << ".PP\n";
    std::istringstream lines(footer);
    for (std::string line; std::getline(lines, line);) {
        const bool indented = line.starts_with("  ");
        if (indented != isExample)
            page << (indented ? ".PP\n.RS 4\n.nf\n" : ".fi\n.RE\n.PP\n");
        isExample = indented;
        if (!line.empty())
            page << roff(indented ? line.substr(2) : line) << '\n';
    }
    if (isExample)
        page << ".fi\n.RE\n";
}

void writeCommand(std::ostream& page, const CLI::App& app, const std::string& words) {
    page << ".SS " << synopsis(app, words) << '\n' << roff(app.get_description()) << ".\n";
    for (const CLI::Option* option : shownOptions(app)) {
        if (option->get_lnames() != std::vector<std::string>{"help"})
            writeOption(page, *option);
    }
    if (app.get_footer() != app.get_parent()->get_footer()) // which it takes over when it has none
        writeFooter(page, app.get_footer());
    for (const CLI::App* subcommand : subcommandsOf(app))
        writeCommand(page, *subcommand, words + ' ' + subcommand->get_name());
}

std::string upperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

}

std::string manualPage(const CLI::App& root, const std::string& program, const std::string& version) {
    std::ostringstream page;
    page << ".TH " << roff(upperCase(program)) << " 1 \"\" \"" << roff("Pointloom " + version)
         << "\" \"User Commands\"\n"
         << ".SH NAME\n"
         << roff(program) << " \\- burn a scoreboard into the video of a match\n"
         << ".SH SYNOPSIS\n"
         << synopsis(root, program) << '\n'
         << ".SH DESCRIPTION\n"
         << roff(root.get_description()) << '\n'
         << ".SH OPTIONS\n";
    for (const CLI::Option* option : shownOptions(root))
        writeOption(page, *option);
    page << ".SH COMMANDS\n";
    for (const CLI::App* subcommand : subcommandsOf(root))
        writeCommand(page, *subcommand, subcommand->get_name());
    page << ".SH EXIT STATUS\n.TP\n0\nDone.\n.TP\n1\nFailed; one line on standard error says what and why.\n"
         << ".TP\n2\nWrong usage.\n.TP\n130\nCancelled.\n"
         << ".SH SEE ALSO\n.BR pointloom (1)\n";
    return page.str();
}

}
