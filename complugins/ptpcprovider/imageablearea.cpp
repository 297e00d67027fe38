// The property "PageImageableSize" of the capabilities.
#include "complugins/ptpcprovider/imageablearea.h"

#include <tvutil/executioncontext.h>
#include <tvutil/tavlencomexception.h>

#include "complugins/formsinforecord.h"
#include "complugins/ptpcprovider/featuretranslation.h"
#include "complugins/ptpcprovider/pagemediasizeoptions.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

using ImageableArea::Area;
using ImageableArea::Geometry;

constexpr ThrowSite kReplace{W("TavlenPtProvider::ReplacePageImageableSizeAndAreaProperties"),
                             W("complugins\\ptpcprovider\\pagemediasizeimpl")};

constexpr WCHAR kProperty[] = W("PageImageableSize");

// A ticket whose orientation cannot be read, for whatever reason, is one in portrait.
Geometry ReadGeometry(const PrintTicketXmlDocument& ticket)
{
    try
    {
        const std::optional<TicketOption> option = ReadTicketOption(ticket, W("PageOrientation"));
        if (option)
            return ImageableArea::GeometryOf(option->name);
    }
    catch (const TavlenComException&)
    {
        return Geometry::Portrait;
    }
    return Geometry::Portrait;
}

ComPtr<IXMLDOMElement> MakeProperty(const PrintCapabilitiesXmlDocument& document, const Area& area)
{
    const auto append = [&document](const ComPtr<IXMLDOMElement>& parent, const WCHAR* name, LONG value)
    {
        document.AppendChildIntegerProperty(parent.Get(), PrintSchema::Keywords, name, value);
    };
    ComPtr<IXMLDOMElement> size;
    document.CreateProperty(PrintSchema::Keywords, kProperty, size.Put());
    append(size, W("ImageableSizeWidth"), area.sizeWidth);
    append(size, W("ImageableSizeHeight"), area.sizeHeight);
    ComPtr<IXMLDOMElement> inner;
    document.CreateProperty(PrintSchema::Keywords, W("ImageableArea"), inner.Put());
    append(inner, W("OriginWidth"), area.originWidth);
    append(inner, W("OriginHeight"), area.originHeight);
    append(inner, W("ExtentWidth"), area.extentWidth);
    append(inner, W("ExtentHeight"), area.extentHeight);
    document.AppendChild(size.Get(), inner.Get());
    return size;
}

} // namespace

HRESULT TavlenPtProvider::ReplacePageImageableSizeAndAreaProperties(PrintCapabilitiesXmlDocument& document,
                                                                    PrintTicketXmlDocument& ticket,
                                                                    MsCachedDeviceCapabilities& capabilities)
{
    if (!ImageableAreaIsEnabled())
        return S_OK;
    const ExecutionContextLifetime context(kReplace);
    FormsInfoRecord form;
    GetPrintTicketPaperSize(ticket, capabilities, &form);
    PrinterModel::Margins margins; // none where there is no product data
    if (m_workflow.IsLoaded())
        margins = GetProductData().GetMargins(form.paperId);
    const Area area = ImageableArea::AreaOf(ReadGeometry(ticket), PageMediaSize::MicronsOf(form.width),
                                            PageMediaSize::MicronsOf(form.length), margins);
    const ComPtr<IXMLDOMElement> property = MakeProperty(document, area);
    document.DeletePropertyNodesIfExist(document.GetNsPrefix(PrintSchema::Keywords), kProperty);
    document.AppendChildToRootNode(property.Get());
    return S_OK;
}
