// The provider's class as the driver's own modules use it: by its name, from the module.
#include <objbase.h>

#include <memory>

#include <gtest/gtest.h>

#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

class CountedProvider : public TavlenPtProvider
{
public:
    ~CountedProvider() override
    {
        ++destroyed;
    }

    static inline int destroyed = 0;
};

} // namespace

TEST(ProviderClass, IsConstructedDerivedFromAndReleasedInAnotherModule)
{
    const LONG before = TavlenPtProvider::GetModuleObjectCount();
    ComPtr<IPrintOemPrintTicketProvider> provider;
    provider.Attach(std::make_unique<TavlenPtProvider>().release()); // born with one reference
    EXPECT_EQ(TavlenPtProvider::GetModuleObjectCount(), before + 1);

    provider.Attach(std::make_unique<CountedProvider>().release());
    ComPtr<IPrintOemPrintTicketProvider> second;
    EXPECT_EQ(provider.As(second), S_OK);
    provider.Reset();
    EXPECT_EQ(CountedProvider::destroyed, 0);
    second.Reset();
    EXPECT_EQ(CountedProvider::destroyed, 1);
}
