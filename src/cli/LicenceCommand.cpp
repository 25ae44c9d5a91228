#include "cli/LicenceCommand.h"

#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Command.h"
#include "cli/Messages.h"

#include <cstdio>
#include <QDeadlineTimer>
#include <QFile>

namespace pointloom::cli {

namespace {

class LicenceCommand final : public Command {
public:
    explicit LicenceCommand(CLI::App& root);
    ExitStatus run() override;

private:
    void carryOut(LicenceManager& manager, const LicenceManager::StopQuery& isStopping) const;
    void showStatus(LicenceManager& manager, const LicenceManager::StopQuery& isStopping) const;

    CLI::App* m_status;
    CLI::App* m_activate;
    CLI::App* m_deactivate;
    CLI::App* m_request;
    CLI::App* m_import;
    std::string m_key;
    QString m_file;
    bool m_asJson = false;
};

LicenceCommand::LicenceCommand(CLI::App& root)
    : Command(root, "licence", "Activate, show or give back the licence of this machine")
    , m_status(app().add_subcommand("status", "Show the licence; renew it when its end is near"))
    , m_activate(app().add_subcommand("activate", "Use a bought key on this machine"))
    , m_deactivate(app().add_subcommand("deactivate", "Give the licence back, for another machine"))
    , m_request(app().add_subcommand("request", "Write the request of a machine without a network"))
    , m_import(app().add_subcommand("import", "Take the licence file that answers a request")) {
    app().require_subcommand(1);
    m_status->add_flag("--json", m_asJson, "Print an object: state, holder, key, expires, clockIsBehind");
    constexpr auto keyHelp = "The key, as on the receipt; - reads it from standard input";
    m_activate->add_option("key", m_key, keyHelp)->type_name("KEY")->required();
    addPath(*m_request, "file", m_file, licenceFile, "The request to write")->required();
    m_request->add_option("--key", m_key, keyHelp)->type_name("KEY")->required();
    addPath(*m_import, "file", m_file, licenceFile, "The licence file")->required();
    app().footer("Example:\n  pointloom-cli licence activate PL-XXXXX-XXXXX-XXXXX-XXXXX");
}

json::OrderedValue asJson(const LicenceStatus& status) {
    json::OrderedValue object{{"state", std::string(rawValue(status.state))}};
    if (status.record) {
        object["holder"] = json::encode(status.record->holder);
        object["key"] = json::encode(LicenceKey::parse(status.record->key).masked());
        if (status.record->expires)
            object["expires"] = json::encode(*status.record->expires);
    }
    object["clockIsBehind"] = status.isClockBehind;
    return object;
}

// A key among the arguments is seen in the list of processes and kept in the shell's history.
QString keyFromStandardInput() {
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        throw CommandError(QStringLiteral("standard input cannot be read: ") + input.errorString());
    constexpr qint64 longestLine = 1000; // bytes
    return QString::fromUtf8(input.readLine(longestLine));
}

void LicenceCommand::showStatus(LicenceManager& manager, const LicenceManager::StopQuery& isStopping) const {
    if (const auto problem = manager.renewIfDue(isStopping))
        sayWarning(QStringLiteral("the licence could not be renewed: ") + problem->message());
    if (m_asJson)
        printJson(asJson(manager.status()));
    else
        print(manager.status().inWords().toStdString() + '\n');
}

void LicenceCommand::carryOut(LicenceManager& manager, const LicenceManager::StopQuery& isStopping) const {
    if (m_status->parsed())
        return showStatus(manager, isStopping);
    if (m_request->parsed())
        return manager.writeRequest(toText(m_key), m_file, isStopping);
    if (m_deactivate->parsed())
        manager.deactivate(isStopping);
    else if (m_import->parsed())
        manager.importFile(m_file, isStopping);
    else
        manager.activate(toText(m_key), isStopping);
    print(manager.status().inWords().toStdString() + '\n');
}

ExitStatus LicenceCommand::run() {
    if (m_key == "-")
        m_key = keyFromStandardInput().toStdString();
    const auto manager = licenceOfThisMachine();
    const CancelOnSignal cancellation;
    try {
        carryOut(*manager, [&] { return cancellation.isRequested(); });
        return ExitStatus::done;
    } catch (const LicenceError& error) {
        if (error.fault() == LicenceFault::malformedKey)
            throw UsageError(error.message());
        if (error.fault() != LicenceFault::cancelled)
            throw;
        sayOnStandardError(error.what());
        return ExitStatus::cancelled;
    }
}

}

std::unique_ptr<Command> makeLicenceCommand(CLI::App& root) {
    return std::make_unique<LicenceCommand>(root);
}

std::unique_ptr<LicenceManager> licenceOfThisMachine() {
    const auto info = InfoDictionary::ofApplication();
    auto manager = std::make_unique<LicenceManager>(LicenceManager::partsOfThisMachine(info));
    manager->load();
    if (!manager->status().isAwaited)
        return manager;
    sayOnStandardError("waiting for the keychain, which may hold a licence, to be unlocked");
    constexpr std::chrono::minutes patience(1);
    const QDeadlineTimer deadline(patience);
    while (manager->status().isAwaited && !deadline.hasExpired())
        manager->load();
    return manager;
}

bool isLicensed(LicenceManager& manager) {
    if (manager.status().isAwaited)
        manager.load([] { return true; }); // without waiting
    const LicenceStatus status = manager.status();
    if (status.state == LicenceState::unread)
        sayWarning(status.inWords());
    return status.isLicensed();
}

}
