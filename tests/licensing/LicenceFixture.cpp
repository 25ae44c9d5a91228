#include "licensing/LicenceFixture.h"

#include "json/JsonDocument.h"

#include <thread>

namespace pointloom::test {

namespace {

class MachineStore final : public RecordStore {
public:
    explicit MachineStore(Machine& machine)
        : m_machine(machine) {}

    std::optional<QByteArray> load(const StopQuery& isStopping) override {
        while (m_machine.isSilent && !isStopping())
            std::this_thread::yield();
        if (m_machine.isSilent)
            throw LicenceError(LicenceFault::cancelled, QStringLiteral("Cancelled."));
        if (m_machine.lockedLoads > 0 && m_machine.lockedLoads-- > 0)
            throw LicenceError(LicenceFault::keychainLocked, QStringLiteral("Unlock it."));
        if (m_machine.readingFault)
            throw LicenceError(*m_machine.readingFault, QStringLiteral("Unlock it."));
        return m_machine.kept;
    }
    void save(const QByteArray& bytes, const StopQuery&) override {
        if (m_machine.isStoreBroken)
            throw LicenceError(LicenceFault::file, QStringLiteral("no room"));
        m_machine.kept = bytes;
    }

private:
    Machine& m_machine;
};

}

QByteArray publicKeyBase64(const Ed25519::SecretKey& key) {
    const auto publicKey = Ed25519::publicKeyOf(key);
    return QByteArray(reinterpret_cast<const char*>(publicKey.data()), Ed25519::publicKeySize).toBase64();
}

LicenceFixture::LicenceFixture() {
    m_listener.listen(QHostAddress::LocalHost, 0);
    m_serviceURL = QStringLiteral("http://127.0.0.1:%1/licences/v1").arg(m_listener.port());
}

LicenceKey LicenceFixture::sell(int machines, const std::optional<QString>& ends,
                                std::optional<int> leaseDays) {
    const LicenceKey key = LicenceKey::generate();
    m_database.addKey({key.text(), QStringLiteral("Ana Pérez"), machines, ends, leaseDays, false});
    return key;
}

std::unique_ptr<LicenceManager> LicenceFixture::startWithoutLoading(Machine& machine) {
    json::OrderedValue info;
    info["CFBundleShortVersionString"] = "1.2.3";
    info["LicenseServiceURL"] = m_serviceURL.toStdString();
    info["LicensePublicKey"] = m_publicKey.toStdString();
    return std::make_unique<LicenceManager>(LicenceManager::Parts{
        .info = InfoDictionary::fromJson(json::compact(info)),
        .store = std::make_unique<MachineStore>(machine),
        .machineId = machine.id,
        .now = [this] { return m_now; },
        .timeout = m_timeout,
    });
}

std::unique_ptr<LicenceManager> LicenceFixture::start(Machine& machine) {
    auto manager = startWithoutLoading(machine);
    manager->load();
    return manager;
}

}
