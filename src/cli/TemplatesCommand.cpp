// pointloom-cli templates: the catalogue of scoreboards.
#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "render/TemplateID.h"

namespace pointloom::cli {

namespace {

class TemplatesCommand final : public Command {
public:
    explicit TemplatesCommand(CLI::App& subcommand);
    ExitStatus run() override;

private:
    std::string m_sport;
    bool m_asJson = false;
};

TemplatesCommand::TemplatesCommand(CLI::App& subcommand)
    : Command(subcommand) {
    limitChoices(app().add_option("--sport", m_sport, "Only those that fit this sport"),
                 rawValues<SportID>());
    app().add_flag("--json", m_asJson, "Print a list of objects: id, displayName, description, sport");
    app().footer("Example:\n  pointloom-cli templates --sport volleyball");
}

json::OrderedValue asJson(TemplateID id) {
    return {{"id", rawValue(id)},
            {"displayName", displayName(id).toStdString()},
            {"description", t(Language::english, description(id)).toStdString()},
            {"sport", rawValue(sportOf(id))}};
}

std::string asLine(TemplateID id) {
    constexpr int idColumn = 20;
    constexpr int nameColumn = 15;
    return (QString::fromUtf8(rawValue(id)).leftJustified(idColumn) +
            displayName(id).leftJustified(nameColumn) + t(Language::english, description(id)) + u'\n')
        .toStdString();
}

ExitStatus TemplatesCommand::run() {
    const auto sport = fromRawValue<SportID>(m_sport);
    const auto everyTemplate = allCases<TemplateID>();
    const std::vector<TemplateID> templates =
        sport ? filteredTemplates(*sport) : std::vector(everyTemplate.begin(), everyTemplate.end());
    if (m_asJson) {
        auto list = json::OrderedValue::array();
        for (const TemplateID id : templates)
            list.push_back(asJson(id));
        printJson(list);
        return ExitStatus::done;
    }
    for (const TemplateID id : templates)
        print(asLine(id));
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeTemplatesCommand(CLI::App& root) {
    return std::make_unique<TemplatesCommand>(
        *root.add_subcommand("templates", "List the scoreboard templates"));
}

}
