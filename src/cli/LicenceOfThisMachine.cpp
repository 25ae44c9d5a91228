#include "cli/LicenceOfThisMachine.h"

#include "cli/Messages.h"

#include <QDeadlineTimer>

namespace pointloom::cli {

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
        say({.notes = {}, .warnings = {status.inWords()}});
    return status.isLicensed();
}

}
