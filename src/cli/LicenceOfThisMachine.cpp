#include "cli/LicenceOfThisMachine.h"

namespace pointloom::cli {

std::unique_ptr<LicenceManager> licenceOfThisMachine() {
    const auto info = InfoDictionary::ofApplication();
    auto manager = std::make_unique<LicenceManager>(LicenceManager::partsOfThisMachine(info));
    manager->load();
    return manager;
}

}
