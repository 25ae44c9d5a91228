#include "licensing/LicenceSheet.h"

#include <utility>

namespace pointloom {

LicenceSheet::LicenceSheet(LicenceManager& manager, std::function<void()> changed)
    : m_manager(manager)
    , m_changed(std::move(changed)) {}

LicenceSheet::~LicenceSheet() {
    cancel();
    if (m_worker.joinable())
        m_worker.join();
}

std::optional<QString> LicenceSheet::problemWithKey(const QString& text) {
    try {
        LicenceKey::parse(text);
        return std::nullopt;
    } catch (const LicenceError& error) {
        return error.message();
    }
}

QString LicenceSheet::holder() const {
    const LicenceStatus now = status();
    return now.record ? now.record->holder : QString();
}

QString LicenceSheet::maskedKey() const {
    const LicenceStatus now = status();
    return now.record ? LicenceKey::parse(now.record->key).masked() : QString();
}

bool LicenceSheet::canDeactivate() const {
    const LicenceState state = status().state;
    return !isWorking() && state != LicenceState::unlicensed && state != LicenceState::unread;
}

void LicenceSheet::activate(const QString& keyText) {
    start(QStringLiteral("Asking the licence service…"),
          QStringLiteral("Thank you. This machine is now licensed."),
          [this, keyText] { m_manager.activate(keyText, stopQuery()); });
}

void LicenceSheet::deactivate() {
    start(QStringLiteral("Giving the licence back…"),
          QStringLiteral("The licence was given back and can be used on another machine."),
          [this] { m_manager.deactivate(stopQuery()); });
}

void LicenceSheet::importFile(const QString& path) {
    start(QStringLiteral("Reading the licence file…"),
          QStringLiteral("Thank you. This machine is now licensed."),
          [this, path] { m_manager.importFile(path, stopQuery()); });
}

void LicenceSheet::writeRequest(const QString& keyText, const QString& path) {
    start(QStringLiteral("Writing the request…"),
          QStringLiteral(
              "The request was written. Hand it to the licence service and import the file it answers with."),
          [this, keyText, path] { m_manager.writeRequest(keyText, path, stopQuery()); });
}

void LicenceSheet::readAgain() {
    if (status().state == LicenceState::unread)
        start(QStringLiteral("Reading the licence…"), QString(), [this] { m_manager.load(stopQuery()); });
}

void LicenceSheet::start(const QString& progress, const QString& success, std::function<void()> operation) {
    if (isWorking())
        return;
    m_isStopping = false;
    m_progress = progress;
    m_message.clear();
    m_fault.reset();
    m_worker = std::thread([this, success, operation = std::move(operation)] {
        Outcome outcome{success, std::nullopt};
        try {
            operation();
        } catch (const LicenceError& error) {
            outcome = {error.message(), error.fault()};
        } catch (const std::exception& error) {
            outcome = {QString::fromUtf8(error.what()), LicenceFault::serviceTrouble};
        }
        QMetaObject::invokeMethod(
            &m_context, [this, outcome] { finish(outcome); }, Qt::QueuedConnection);
    });
    m_changed();
}

void LicenceSheet::finish(const Outcome& outcome) {
    m_worker.join();
    m_progress.clear();
    m_message = outcome.message;
    m_fault = outcome.fault;
    m_changed();
}

}
