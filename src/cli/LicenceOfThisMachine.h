// The licence that the commands of this program read and change.
#pragma once

#include "licensing/LicenceManager.h"

#include <memory>

namespace pointloom::cli {

/// The manager with the licence kept on this machine loaded and verified, with no network.
std::unique_ptr<LicenceManager> licenceOfThisMachine();

}
