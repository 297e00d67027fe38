#include "complugins/renbase.h"

#include <tvcore/datamodelmanager.h>
#include <tvutil/executioncontext.h>

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\renbase");

} // namespace

RenBase::RenBase(HANDLE printer, XDevmode& devmode, ProductData& product)
    : m_printer(printer), m_devmode(devmode), m_product(product)
{
}

bool RenBase::GenerateJtif(ByteBuffer& jobTicket)
{
    const ExecutionContextLifetime context({W("RenBase::GenerateJtif"), kSourceFile});
    DataModelManager dataModel(m_printer, m_product, m_devmode, DataModelUse::kPrintTicketModel);
    return WriteLines(*dataModel.GetFeatureServices(), jobTicket);
}
