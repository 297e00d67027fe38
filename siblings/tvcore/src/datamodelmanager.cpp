#include <tvcore/datamodelmanager.h>

#include <utility>

#include <tvcore/featureservicescontext.h>
#include <tvcore/featurevalues.h>
#include <tvcore/productdata.h>
#include <tvutil/devicesettingsmanager.h>
#include <tvutil/executioncontext.h>
#include <tvutil/printer.h>

#include "complugins/documentsettings.h"
#include "complugins/msfeaturemanager.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("siblings\\tvcore\\datamodelmanager");

// What the printer says for every document: the product's defaults, and over them its device settings.
FeatureSettings ReadDefaults(HANDLE printer, const ProductData& product)
{
    using FeatureCatalogue::Scope;
    FeatureSettings defaults;
    const FeatureSettings none;
    for (const Scope scope : {Scope::Document, Scope::Device})
        AttributeBytesListTranslator(scope, defaults, none)
            .ImportSettings(FeatureCatalogue::MakeSettings(product.GetDefaults(), scope));
    if (printer != nullptr)
        AttributeBytesListTranslator(Scope::Device, defaults, none)
            .ImportSettings(*DeviceSettingsManager(Printer(printer)).GetDefaultAttributeBytesIndexedList());
    return defaults;
}

} // namespace

DataModelManager::DataModelManager(HANDLE printer, ProductData& product, XDevmode& devmode, LONG /*use*/,
                                   IPrintCoreHelper* helper, MSDeviceCapabilities* capabilities)
    : m_printer(printer), m_product(product), m_devmode(&devmode), m_helper(helper), m_capabilities(capabilities)
{
    const ExecutionContextLifetime context({W("DataModelManager::DataModelManager"), kSourceFile});
    m_services.SetMediaTypes(product.GetMediaTypes());
    DisconnectFeatureServices();
    // Not the devmode's own list: its cache believes the CRC that a part states, which may be another document's.
    if (const auto settings = ReadDocumentSettings(devmode))
        m_services.GetTranslator(TranslatorIds::kSettings, TranslatorIds::kAttributeBytes, TranslatorIds::kDocument)
            .ImportSettings(*settings);
    ConnectFeatureServices(&m_services);
    m_services.PopulateFromSource(DataModelUse::kPrintTicketSettings);
    m_services.CompleteFromDefaults();
    m_services.KeepAsUnchanged();
}

DataModelManager::~DataModelManager() = default;

FeatureServices* DataModelManager::GetFeatureServices()
{
    return &m_services;
}

void DataModelManager::SetXDevmode(XDevmode& devmode)
{
    m_devmode = &devmode;
}

void DataModelManager::DisconnectFeatureServices()
{
    m_services.SetSource(nullptr);
    m_services.SetDefaults(ReadDefaults(m_printer, m_product));
}

void DataModelManager::ConnectFeatureServices(FeatureServices* services)
{
    services->SetSource([this, services] { BringInCoreSettings(*services); });
}

void DataModelManager::BringInCoreSettings(FeatureServices& services)
{
    DEVMODEW* const devmode = m_devmode->GetDevmode();
    if (devmode == nullptr || m_capabilities == nullptr)
        return;
    FeatureServicesContext context(services, devmode);
    MsFeatureManager(m_printer, context, m_helper, *m_capabilities).SetCurrentMsPublicAndPrivateDmSettingsInDataModel();
}
