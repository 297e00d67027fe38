#include "newdevmode.h"

#include <tvcore/productdata.h>
#include <tvui/defaultdevmode.h>

Devmode MakeNewDevmode(const PrinterModel& model, const CXString& printerName)
{
    const ByteBuffer devmode = MakeDefaultDevmode(ProductData(model), printerName);
    return Devmode::FromBytes({reinterpret_cast<const char*>(devmode.data()), devmode.size()}, "the driver's default");
}
