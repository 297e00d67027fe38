// Every call and every allocation of loading and writing a document fails in turn: nothing is lost, and the same steps
// work afterwards. Changes under faults are tested with the provider's conversions.
#include <gtest/gtest.h>
#include <winport/faultinjection.h>

#include "tests/platform/domfixture.h"

TEST(DomFaults, EveryCallAndEveryAllocationMayFail)
{
    using winport::FaultKind;
    const CComBSTR text(W("<a xmlns:p='u' p:x='\u00E9'><p:b>one</p:b><c> <d/> </c><!--e--><?f g?><![CDATA[h]]></a>"));
    const std::string expected = XmlOf(Loaded(text.View()).Get());
    for (const FaultKind kind : {FaultKind::PlatformCall, FaultKind::Allocation})
    {
        bool hasFired = kind == FaultKind::PlatformCall || TVPT_ALLOCATION_FAULTS != 0;
        for (unsigned nth = 1; hasFired; ++nth)
        {
            SCOPED_TRACE(nth);
            const DomDocument document = Loaded(W("<old/>"));
            VARIANT_BOOL isLoaded = VARIANT_FALSE;
            CComBSTR written;
            winport::ArmFault(kind, nth);
            HRESULT result = document->loadXML(text.Get(), &isLoaded);
            if (result == S_OK)
                result = document->get_xml(written.Put());
            hasFired = winport::DisarmFault(kind);
            EXPECT_EQ(hasFired, FAILED(result)) << result;
            EXPECT_EQ(hasFired, written.Get() == nullptr);
            EXPECT_EQ(S_OK, LoadText(document, text.View()));
            EXPECT_EQ(expected, XmlOf(document.Get()));
            ASSERT_LT(nth, 5'000u);
        }
    }
}
