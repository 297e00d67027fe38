// RenJtifForXps: the job ticket of a job that takes the XPS print path.
#pragma once

#include "complugins/renbase.h"

class RenJtifForXps : public RenBase
{
public:
    using RenBase::RenBase;

protected:
    // Always true: a ticket has its first line at least.
    bool WriteLines(FeatureServices& features, ByteBuffer& jobTicket) override;
};
