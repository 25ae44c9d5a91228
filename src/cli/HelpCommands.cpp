// pointloom-cli completion, complete, manual: read from the parser's own description of the command line, so
// that they agree with --help.
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Messages.h"
#include "render/TemplateID.h"

#include <algorithm>
#include <sstream>

namespace pointloom::cli {

namespace {

// Scripts that ask `complete` for what may follow: a line for each offer, with a tab before its description,
// or ".EXTENSION" for files that end so.
constexpr auto bashScript = R"(_pointloom_cli() {
    local current=${COMP_WORDS[COMP_CWORD]} offer extension
    local -a offers
    [[ $current == = ]] && current=
    COMPREPLY=()
    while IFS=$'\t' read -r offer _; do
        if [[ $offer != .* ]]; then
            offers+=("$offer")
            continue
        fi
        compopt -o filenames
        for extension in "$offer" "${offer^^}"; do
            mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -X "!*$extension" -- "$current")
        done
    done < <("${COMP_WORDS[0]/#\~/$HOME}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    if [[ $extension ]]; then
        mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -d -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "${offers[*]}" -- "$current")
    fi
}
complete -F _pointloom_cli pointloom-cli
)";

// Sourced, it registers itself; found on zsh's path, it is called by the name of its file.
constexpr auto zshScript = R"zsh(#compdef pointloom-cli
_pointloom_cli() {
    local offer description
    local -a offers extensions kind
    [[ $words[CURRENT] == -* ]] && kind=(-o)
    while IFS=$'\t' read -r offer description; do
        if [[ $offer == .* ]]; then
            extensions+=(${offer#.})
        else
            offers+=("$offer${description:+:$description}")
        fi
    done < <(${~words[1]} complete -- "${(@)words[2,CURRENT]}" 2>/dev/null)
    (( $#extensions )) && _files -g "*.(#i)(${(j:|:)extensions})"
    (( $#offers )) && _describe $kind offer offers
}
if [[ $funcstack[1] == _pointloom-cli ]]; then _pointloom_cli "$@"; else compdef _pointloom_cli pointloom-cli; fi
)zsh";

constexpr auto fishScript = R"(function __pointloom_cli_offers
    set -l words (commandline -opc) (commandline -ct)
    set -l program (string replace -r '^~' $HOME -- $words[1])
    for offer in ($program complete -- $words[2..] 2>/dev/null)
        if string match -q '.*' -- $offer
            __fish_complete_suffix $offer
        else
            echo $offer
        end
    end
end
complete -c pointloom-cli -f -k -a '(__pointloom_cli_offers)'
)";

class CompletionCommand final : public Command {
public:
    explicit CompletionCommand(CLI::App& root)
        : Command(root, "completion", "Print a completion script for a shell") {
        constexpr auto scripts = std::to_array<std::pair<const char*, std::string_view>>(
            {{bashScript, "bash"}, {fishScript, "fish"}, {zshScript, "zsh"}});
        addChoice(app(), "shell", m_script, scripts, "The shell")->required();
        app().footer("Example:\n  source <(pointloom-cli completion bash)");
    }

    ExitStatus run() override {
        print(*m_script);
        return ExitStatus::done;
    }

private:
    std::optional<const char*> m_script;
};

// The options and positional arguments that help shows, in its order.
std::vector<const CLI::Option*> shownOptions(const CLI::App& app) {
    return app.get_options([](const CLI::Option* option) { return !option->get_group().empty(); });
}

std::vector<const CLI::App*> shownSubcommands(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App* subcommand) { return !subcommand->get_group().empty(); });
}

// "-o" and "--output"; empty for a positional argument.
std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.push_back('-' + name);
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

bool takesValue(const CLI::Option& option) {
    return option.get_expected_max() > 0;
}

// The words of a placeholder "{a,b}".
std::vector<std::string> choicesOf(const CLI::Option& option) {
    const std::string placeholder = option.get_type_name();
    if (!placeholder.starts_with('{'))
        return {};
    return CLI::detail::split(placeholder.substr(1, placeholder.size() - 2), ',');
}

// Told by the placeholder; none for numbers and names.
void offerValues(const CLI::Option& option, const std::string& prefix = {}) {
    const std::string placeholder = option.get_type_name();
    const auto words =
        placeholder == templatePlaceholder ? wordsOf(RawValues<TemplateID>::table) : choicesOf(option);
    for (const std::string& word : words)
        print(prefix + word + '\n');
    for (const PathKind& kind : pathKinds) {
        if (placeholder == kind.placeholder && !kind.extensions.empty())
            print('.' + CLI::detail::join(CLI::detail::split(std::string(kind.extensions), ' '), "\n.") +
                  '\n');
    }
}

void offerOptions(const CLI::App& app) {
    for (const CLI::Option* option : shownOptions(app)) {
        for (const std::string& name : namesOf(*option))
            print(name + '\t' + option->get_description() + '\n');
    }
}

// Subcommands, or values of the positional argument after `position` others.
void offerPositional(const CLI::App& app, std::size_t position) {
    for (const CLI::App* subcommand : shownSubcommands(app))
        print(subcommand->get_name() + '\t' + subcommand->get_description() + '\n');
    for (const CLI::Option* option : shownOptions(app)) {
        if (namesOf(*option).empty() && position-- == 0)
            offerValues(*option);
    }
}

class CompleteCommand final : public Command {
public:
    explicit CompleteCommand(CLI::App& root)
        : Command(root, "complete", "Print what may follow the words of a command line")
        , m_root(root) {
        app().group(""); // for the scripts; help does not show it
        app().add_option("words", m_words, "Without the program's; the last one is being typed")->required();
    }

    ExitStatus run() override;

private:
    const CLI::App& m_root;
    std::vector<std::string> m_words;
};

ExitStatus CompleteCommand::run() {
    const std::string current = m_words.back();
    m_words.pop_back();
    const CLI::App* app = &m_root;
    const CLI::Option* option = nullptr; // whose value is next
    std::size_t position = 0;
    const auto optionNamed = [&](const std::string& name) {
        const CLI::Option* found = name.starts_with('-') ? app->get_option_no_throw(name) : nullptr;
        return found && takesValue(*found) ? found : nullptr;
    };
    for (const std::string& word : m_words) {
        if (word == "=" || std::exchange(option, nullptr)) // bash makes a word of "=" before a value
            continue;
        const auto subcommands = shownSubcommands(*app);
        const auto chosen = std::find_if(subcommands.begin(), subcommands.end(),
                                         [&](const CLI::App* one) { return one->get_name() == word; });
        option = optionNamed(word);
        if (chosen != subcommands.end())
            app = *chosen;
        else if (!word.starts_with('-'))
            ++position;
    }
    const auto equalsSign = current.find('=');
    if (option)
        offerValues(*option);
    else if (const CLI::Option* assigned = optionNamed(current.substr(0, equalsSign));
             assigned && equalsSign != std::string::npos)
        offerValues(*assigned, current.substr(0, equalsSign + 1));
    else if (current.starts_with('-'))
        offerOptions(*app);
    else
        offerPositional(*app, position);
    return ExitStatus::done;
}

// Text is UTF-8; dashes of options stay dashes, and no line begins like a request.
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
    std::string choices;
    for (const std::string& word : choicesOf(option))
        choices += (choices.empty() ? "" : "|") + bold(word);
    return choices.empty() ? italic(option.get_type_name()) : choices;
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
    if (!shownSubcommands(app).empty())
        return line + ' ' + italic("COMMAND") + " ...";
    for (const CLI::Option* option : shownOptions(app)) {
        if (namesOf(*option).empty())
            line += ' ' + italic(option->get_type_name());
        else if (option->get_required())
            line += ' ' + bold(namesOf(*option).front()) + ' ' + value(*option);
    }
    return line + " [" + italic("OPTIONS") + ']';
}

// A footer's examples are indented by two spaces and kept line by line.
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
    for (const CLI::App* subcommand : shownSubcommands(app))
        writeCommand(page, *subcommand, words + ' ' + subcommand->get_name());
}

// In the man macros of roff, section 1.
std::string manualPage(const CLI::App& root) {
    std::ostringstream page;
    page << ".TH "
         << "POINTLOOM\\-CLI"
         << " 1 \"\" \"" << roff("Pointloom " POINTLOOM_VERSION) << "\" \"User Commands\"\n"
         << ".SH NAME\n"
         << roff(programName) << " \\- burn a scoreboard into the video of a match\n"
         << ".SH SYNOPSIS\n"
         << synopsis(root, programName) << '\n'
         << ".SH DESCRIPTION\n"
         << roff(root.get_description()) << '\n'
         << ".SH OPTIONS\n";
    for (const CLI::Option* option : shownOptions(root))
        writeOption(page, *option);
    page << ".SH COMMANDS\n";
    for (const CLI::App* subcommand : shownSubcommands(root))
        writeCommand(page, *subcommand, subcommand->get_name());
    page << ".SH EXIT STATUS\n.TP\n0\nDone.\n.TP\n1\nFailed; one line on standard error says what and why.\n"
         << ".TP\n2\nWrong usage.\n.TP\n130\nCancelled.\n"
         << ".SH SEE ALSO\n.BR pointloom (1)\n";
    return page.str();
}

class ManualCommand final : public Command {
public:
    explicit ManualCommand(CLI::App& root)
        : Command(root, "manual", "Print the manual page")
        , m_root(root) {
        app().footer("Example:\n  pointloom-cli manual | man -l -");
    }

    ExitStatus run() override {
        print(manualPage(m_root));
        return ExitStatus::done;
    }

private:
    const CLI::App& m_root;
};

}

std::unique_ptr<Command> makeCompletionCommand(CLI::App& root) {
    return std::make_unique<CompletionCommand>(root);
}

std::unique_ptr<Command> makeCompleteCommand(CLI::App& root) {
    return std::make_unique<CompleteCommand>(root);
}

std::unique_ptr<Command> makeManualCommand(CLI::App& root) {
    return std::make_unique<ManualCommand>(root);
}
}
