#include "app/BackgroundLicence.h"

#include "app/Shell.h"
#include "licensing/LicenceFixture.h"

namespace pointloom::test {
namespace {

class BackgroundLicenceTest : public LicenceFixture {
protected:
    AppState m_state{nullptr};
};

TEST_F(BackgroundLicenceTest, ALicenceCountsOnceTheKeychainIsUnlocked) {
    start(m_laptop)->activate(sell().text());
    m_laptop.lockedLoads = 2;
    const auto manager = startWithoutLoading(m_laptop);
    bool isLicensedWhenLoaded = false;
    const BackgroundLicence follower(*manager, m_state, [&] { isLicensedWhenLoaded = m_state.isLicensed; });
    EXPECT_TRUE(eventually([&] { return isLicensedWhenLoaded; }));
    EXPECT_TRUE(m_state.isLicensed);
}

TEST_F(BackgroundLicenceTest, QuittingDoesNotWaitForAKeychainThatIsSilent) {
    m_laptop.isSilent = true;
    const auto manager = startWithoutLoading(m_laptop);
    { const BackgroundLicence follower(*manager, m_state); }
    EXPECT_FALSE(m_state.isLicensed.value());
}

}
}
