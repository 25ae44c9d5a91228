#include "app/CommandBridge.h"

namespace pointloom {

CommandBridge& CommandBridge::shared() {
    static CommandBridge bridge;
    return bridge;
}

}
