#include "licensing/LicenceOperations.h"

#include <utility>

namespace pointloom {

using StopQuery = LicenceManager::StopQuery;

LicenceOperations::LicenceOperations(LicenceManager& manager, std::function<void()> changed)
    : m_manager(manager)
    , m_changed(std::move(changed)) {}

LicenceOperations::~LicenceOperations() {
    cancel();
    if (m_worker.joinable())
        m_worker.join();
}

QString LicenceOperations::maskedKey() const {
    const LicenceStatus now = status();
    return now.record ? LicenceKey::parse(now.record->key).masked() : QString();
}

bool LicenceOperations::canDeactivate() const {
    const LicenceState state = status().state;
    return !isWorking() && state != LicenceState::unlicensed && state != LicenceState::unread;
}

void LicenceOperations::activate(const QString& keyText) {
    start(true, [this, keyText](const StopQuery& isStopping) { m_manager.activate(keyText, isStopping); });
}

void LicenceOperations::deactivate() {
    start(true, [this](const StopQuery& isStopping) { m_manager.deactivate(isStopping); });
}

void LicenceOperations::importFile(const QString& path) {
    start(true, [this, path](const StopQuery& isStopping) { m_manager.importFile(path, isStopping); });
}

void LicenceOperations::writeRequest(const QString& keyText, const QString& path) {
    start(true, [this, keyText, path](const StopQuery& isStopping) {
        m_manager.writeRequest(keyText, path, isStopping);
    });
}

void LicenceOperations::readAgain() {
    if (status().state == LicenceState::unread)
        start(false, [this](const StopQuery& isStopping) { m_manager.load(isStopping); });
}

void LicenceOperations::start(bool tellsSuccess, Operation operation) {
    if (isWorking())
        return;
    m_isStopping = false;
    m_hasOutcome = false;
    m_error.reset();
    m_worker = std::thread([this, tellsSuccess, operation = std::move(operation)] {
        std::optional<LicenceError> error;
        try {
            operation([this] { return m_isStopping.load(); });
        } catch (const LicenceError& fault) {
            error = fault;
        } catch (const std::exception& fault) {
            error = LicenceError(LicenceFault::serviceTrouble, QString::fromUtf8(fault.what()));
        }
        QMetaObject::invokeMethod(
            &m_context, [this, tellsSuccess, error] { finish(tellsSuccess, error); }, Qt::QueuedConnection);
    });
    m_changed();
}

void LicenceOperations::finish(bool tellsSuccess, const std::optional<LicenceError>& error) {
    m_worker.join();
    m_hasOutcome = tellsSuccess || error;
    m_error = error;
    m_changed();
}

}
