// pointloom-cli licence, which activates, shows and gives back the licence of this machine; and that licence.
#pragma once

#include "licensing/LicenceManager.h"

#include <memory>

namespace pointloom::cli {

/// The manager with the licence kept on this machine loaded and verified, with no network. Waits a minute for
/// a keychain to be unlocked, and says so.
std::unique_ptr<LicenceManager> licenceOfThisMachine();

/// Whether exported videos carry no licence mark. Takes an answer of the keychain that has come meanwhile;
/// warns when it is still not known.
bool isLicensed(LicenceManager& manager);

}
