// What the configuration module writes into the caches, and when.
#include <tuple>

#include <windows.h>

#include <array>

#include <tvutil/datacache.h>
#include <tvutil/tavlenutilities.h>

#include "complugins/msdevicecapabilities.h"
#include "complugins/papercache.h"
#include "tests/tvui/installedprinter.h"

namespace
{

constexpr std::tuple<const char*, bool, const char*> kForms[] = {
    {"Envelope DL", false, "Env. DL"},
    {"Big Envelope for an Envelope", true, "Big Env. for an Env."},
    {"11x17", true, "11x17 inches"},
    {"8 1/2 X 13.5", true, "8 1/2 X 13.5 inches"},
    {"4 \xC3\x97 6", true, "4 \xC3\x97 6 inches"},
    {"11x17 Envelope", true, "11x17 Env."},
    {"100x200", false, "100x200"},
    {"12x18 in", true, "12x18 in"},
    {"12", true, "12"},
    {"x", true, "x"},
    {"Letter", true, "Letter"},
};

class CapabilityCaching : public InstalledPrinter
{
protected:
    [[nodiscard]] ByteBuffer Content(const WCHAR* cache) const
    {
        const Printer printer(m_name);
        const CXString port = TavlenUtilities::ConvertPortNameToRegistryKey(printer.GetPortName().View());
        const DataCache store({m_name, port}, HKEY_CURRENT_USER, MSDeviceCapabilities::kStamp, true);
        return store.Read(cache).value_or(ByteBuffer());
    }
};

TEST_F(CapabilityCaching, NamesPapersByOneRule)
{
    Install(kPostScriptModel,
            [](nlohmann::json& model)
            {
                int paperId = 500;
                for (const auto& [name, isInInches, displayName] : kForms)
                    model["forms"].push_back({{"paperId", ++paperId},
                                              {"name", name},
                                              {"width", 1000},
                                              {"length", 2000},
                                              {"units", isInInches ? 7492 : 7491},
                                              {"type", 25005},
                                              {"valueId", 0}});
            });
    const auto papers = PaperCache::ReadPapers(Content(W("XPaperCaps")).bytes());
    ASSERT_TRUE(papers);
    ASSERT_GT(papers->size(), std::size(kForms));
    const auto ours = std::span(*papers).last(std::size(kForms));
    for (std::size_t at = 0; at < ours.size(); ++at)
        EXPECT_EQ(ours[at].displayName.ToUtf8(), std::get<2>(kForms[at]));
}

TEST_F(CapabilityCaching, FollowsTheEventsOfThePrinter)
{
    Install(kUnidrvModel);
    const ConfigurationModule module;
    WideString name = MutableName();
    WideString unknown = W("no such printer");
    const ByteBuffer whole = Content(W("XPaperCaps"));
    ASSERT_FALSE(whole.empty());
    for (const INT event : {PRINTER_EVENT_ADD_CONNECTION, PRINTER_EVENT_INITIALIZE, PRINTER_EVENT_CACHE_REFRESH})
    {
        EXPECT_TRUE(module.Event(name.data(), PRINTER_EVENT_DELETE));
        EXPECT_TRUE(Content(W("XPaperCaps")).empty());
        EXPECT_TRUE(module.Event(name.data(), PRINTER_EVENT_ATTRIBUTES_CHANGED));
        EXPECT_TRUE(Content(W("XPaperCaps")).empty());
        EXPECT_TRUE(module.Event(name.data(), event)) << event;
        EXPECT_EQ(Content(W("XPaperCaps")), whole);
        EXPECT_FALSE(module.Event(unknown.data(), event));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    }
    ChangeInstalledModel([](nlohmann::json& model) { model["forms"].clear(); });
    EXPECT_FALSE(module.Event(name.data(), PRINTER_EVENT_CACHE_REFRESH));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_DATA});
    EXPECT_EQ(Content(W("XPaperCaps")), whole) << "a model that cannot be read changes nothing";
}

} // namespace
