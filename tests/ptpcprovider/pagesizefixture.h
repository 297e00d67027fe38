// A provider bound to an installed printer of a shipped model, and papers on their way through it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "complugins/fixedtext.h"
#include "complugins/msdevicecapabilities.h"
#include "complugins/papercache.h"
#include "printerhandle.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/ptpcprovider/provideraccess.h"
#include "tests/tvui/installedprinter.h"

class PageSizes : public InstalledPrinter
{
protected:
    void Bind(const std::string& model, const std::function<void(nlohmann::json&)>& change = {})
    {
        m_binding.reset();
        m_printer.reset();
        Install(model, change);
        m_printer = PrinterHandle::Open(m_name.ToUtf8(), PrinterHandle::Access::Use);
        EXPECT_EQ(S_OK, m_binding.emplace().BindTo(m_printer->Get()));
    }

    // In the place of the list that the installation has filled in.
    void SetForms(const std::vector<FormsInfoRecord>& forms) const
    {
        MSDeviceCapabilities capabilities;
        capabilities.Initialize(m_printer->Get());
        capabilities.SetCache(MSDeviceCapabilities::Cache::Papers,
                              PaperCache::Write(0, capabilities.GetCustomFormsCRC(), forms, {}));
        EXPECT_EQ(S_OK, capabilities.Save());
    }

    // "9 2100x2970 A4"; fields that are to be cleared are set before.
    std::string ToDevmode(IXMLDOMDocument2* ticket) const
    {
        const TestDevmode block;
        DEVMODEW& devmode = *block.Get();
        devmode.dmFields = DM_COPIES | DM_FORMNAME | DM_PAPERWIDTH | DM_PAPERLENGTH;
        if (m_binding->provider->ConvertPrintTicketToDevMode(ticket, block.Size(), &devmode, 0, nullptr) != S_OK)
            return "refused";
        const DWORD size = devmode.dmPaperSize == DMPAPER_USER ? DM_PAPERWIDTH | DM_PAPERLENGTH : 0;
        EXPECT_EQ(DM_COPIES | DM_PAPERSIZE | size, devmode.dmFields);
        return std::to_string(devmode.dmPaperSize) + " " + std::to_string(WORD(devmode.dmPaperWidth)) + "x" +
               std::to_string(WORD(devmode.dmPaperLength)) + " " + Utf8(GetFixedText(devmode.dmFormName));
    }

    HRESULT ToTicket(int paperNumber, int width, int length, IXMLDOMDocument2* ticket) const
    {
        const TestDevmode block;
        DEVMODEW& devmode = *block.Get();
        devmode.dmFields = DM_PAPERSIZE;
        devmode.dmPaperSize = static_cast<short>(paperNumber);
        devmode.dmPaperWidth = static_cast<short>(width);
        devmode.dmPaperLength = static_cast<short>(length);
        const std::vector<std::byte> before = block.Bytes();
        const HRESULT result =
            m_binding->provider->ConvertDevModeToPrintTicket(block.Size(), &devmode, 0, nullptr, ticket);
        EXPECT_EQ(before, block.Bytes());
        return result;
    }

    // The names and values below the elements that the queries find, in the document's order.
    static std::string Words(IXMLDOMDocument2* document, const std::vector<std::string>& elements)
    {
        std::string query;
        for (const std::string& element : elements)
            query += (query.empty() ? "" : " | ") + element + "//@name | " + element + "//psf:Value";
        return Join(Select(document, query));
    }

    static std::string Join(const std::vector<std::string>& words)
    {
        std::string text;
        for (const std::string& word : words)
            text += (text.empty() ? "" : " ") + word;
        return text;
    }

    static std::string SizeIn(IXMLDOMDocument2* ticket)
    {
        return Words(ticket, {"//psf:Feature[@name='psk:PageMediaSize']/psf:Option",
                              "//psf:ParameterInit[starts-with(@name,'psk:PageMedia')]"});
    }

    std::optional<PrinterHandle> m_printer;
    std::optional<ProviderBinding> m_binding;
};
