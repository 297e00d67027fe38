#include "boundprinter.h"

#include "coredrivercapabilities.h"
#include "coredriverdevmode.h"
#include "coredriverticket.h"
#include "documenttree.h"
#include "newdevmode.h"
#include "printersetup.h"
#include "printschemadocument.h"
#include "ticketdocument.h"
#include "utilitiesstaticlib/documentlimits.h"

BoundPrinter::BoundPrinter(const std::string& name, bool hasCoreHelper)
    : m_name(name),
      m_printer(PrinterHandle::Open(name, PrinterHandle::Access::Use)),
      m_helper(hasCoreHelper ? CoreHelper::Make(Model()) : ComPtr<CoreHelper>()),
      m_provider(m_printer, name, m_helper.Get())
{
}

ProviderHost& BoundPrinter::Provider() noexcept
{
    return m_provider;
}

Devmode BoundPrinter::MakeDefaultDevmode()
{
    return MakeNewDevmode(Model(), DescribePrinter(m_printer, m_name).name);
}

ComPtr<IXMLDOMDocument2> BoundPrinter::MakeBaseTicket(const Devmode& devmode)
{
    return LoadDocument(MakeCoreDriverTicket(devmode, Model(), NamespaceUri(), m_helper.Get()),
                        "the core driver's ticket");
}

ComPtr<IXMLDOMDocument2> BoundPrinter::MakeBaseCapabilities(const Devmode& devmode)
{
    return LoadDocument(MakeCoreDriverCapabilities(devmode, Model(), NamespaceUri(), m_helper.Get()),
                        "the core driver's capabilities");
}

void BoundPrinter::ApplyTicket(IXMLDOMDocument2& ticket, Devmode& devmode, const std::string& file)
{
    ApplyCoreDriverTicket(LoadDocumentTree(DocumentToBytes(ticket), file), Model(), NamespaceUri(), m_helper.Get(),
                          devmode);
}

const PrinterModel& BoundPrinter::Model()
{
    if (!m_model)
        m_model = ReadInstalledModel(m_printer, m_name);
    return *m_model;
}

std::string BoundPrinter::NamespaceUri()
{
    return DriverNamespaceUri(m_provider.DefaultNamespace(), Model().name);
}

ComPtr<IXMLDOMDocument2> ReadForProvider(const std::string& file, std::string_view rootName,
                                         const StandardStreams& streams, std::string_view driverNamespaceUri)
{
    return LoadForProvider(ReadInput(file, documentlimits::kMaximumFileBytes, streams), file, rootName,
                           driverNamespaceUri);
}
