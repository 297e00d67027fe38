// What the portability layer has beyond Windows: fault injection.
#include "tests/platform/domfixture.h"
#include "tests/platform/eachfault.h"

TEST(FaultInjection, LoadingAModuleFailsCleanlyAndThenWorksAgain)
{
    const auto load = []
    {
        HMODULE const module = LoadLibraryW(W("tvtestcfg_B.dll"));
        EXPECT_TRUE(module != nullptr || GetLastError() == ERROR_NOT_ENOUGH_MEMORY);
        return module != nullptr && FreeLibrary(module);
    };
    ExpectEachFaultHarmless(load,
                            [&load](bool) { return GetModuleHandleW(W("tvtestcfg_B.dll")) == nullptr && load(); });
}

// Changes under faults are tested with the provider's conversions.
TEST(FaultInjection, ADocumentIsReadAndWrittenOrNot)
{
    const CComBSTR text(W("<a xmlns:p='u' p:x='\u00E9'><p:b>one</p:b><c> <d/> </c><!--e--><?f g?><![CDATA[h]]></a>"));
    const DomDocument document = Loaded(text.View());
    const std::string expected = XmlOf(document.Get());
    CComBSTR written;
    const auto readAndWrite = [&]
    {
        return document->loadXML(text.Get(), nullptr) == S_OK && document->get_xml(written.Put()) == S_OK;
    };
    ExpectEachFaultHarmless(readAndWrite,
                            [&](bool succeeded)
                            {
                                return (written.Get() != nullptr) == succeeded && readAndWrite() &&
                                       XmlOf(document.Get()) == expected && !*written.Put();
                            });
}
