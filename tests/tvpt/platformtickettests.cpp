// Tickets of a producer that nobody here wrote: the platform's own service makes one of an installed printer's devmode,
// the provider completes it, and a devmode gets the settings back. Windows only.
#include <windows.h>

#include <objidl.h>
#include <prntvpt.h>

#include "hostrun.h"
#include "tests/common/testfolders.h"
#include "utilitiesstaticlib/comptr.h"

namespace
{

using nlohmann::json;

class PlatformTickets : public HostTest
{
protected:
    // What the platform's service makes of a devmode of the printer.
    static std::string FromService(const std::string& printer, std::string devmode)
    {
        HPTPROVIDER provider = nullptr;
        EXPECT_EQ(PTOpenProvider(std::wstring(printer.begin(), printer.end()).c_str(), 1, &provider), S_OK);
        ComPtr<IStream> stream;
        EXPECT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()), S_OK);
        EXPECT_EQ(PTConvertDevModeToPrintTicket(provider, static_cast<ULONG>(devmode.size()),
                                                reinterpret_cast<DEVMODEW*>(devmode.data()), kPTJobScope, stream.Get()),
                  S_OK);
        PTCloseProvider(provider);
        STATSTG state{};
        EXPECT_EQ(stream->Stat(&state, STATFLAG_NONAME), S_OK);
        std::string ticket(static_cast<std::size_t>(state.cbSize.QuadPart), '\0');
        EXPECT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
        EXPECT_EQ(stream->Read(ticket.data(), static_cast<ULONG>(ticket.size()), nullptr), S_OK);
        return ticket;
    }
};

TEST_F(PlatformTickets, ComeThroughTheProviderAndBack)
{
    for (const std::string model : kModels)
    {
        SCOPED_TRACE(model);
        const std::string printer = InstallTestPrinter(model);
        const json media = json::parse(ReadBytes(ModelsFolder() / (model + ".json")))["mediaTypes"][1]["id"];
        WriteDevmode("set.dm", {"dmCopies=3", "dmPaperSize=11", "dmOrientation=2", "dmColor=1", "feature.43=7",
                                "feature.175=" + media.dump(), "app=excel.exe"});
        OutputOf({"devmode", "reconcile", "--printer", printer, File("set.dm")});
        WriteDevmode("d.dm");
        WriteBytes(File("service.xml"), FromService(printer, ReadBytes(File("set.dm"))));
        FromDevmode("set.dm", "t.xml", "service.xml");
        ToDevmode("t.xml", "d.dm", "back.dm");
        const json sent = ShownDevmode(ReadBytes(File("set.dm")));
        const json back = ShownDevmode(ReadBytes(File("back.dm")));
        EXPECT_NE(sent, ShownDevmode(ReadBytes(File("d.dm"))));
        for (const char* const part : {"public", "oem", "features"})
            EXPECT_EQ(sent[part], back[part]);
        const RunResult of = RunHost({"check", File("t.xml")});
        EXPECT_EQ(of.out + of.errors, "");
    }
}

} // namespace
