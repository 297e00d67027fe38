#include "complugins/formsinforecord.h"

#include "complugins/fixedtext.h"

void FormsInfoRecord::SetName(WStringView text) noexcept
{
    SetFixedText(name, text);
}

WStringView FormsInfoRecord::GetName() const noexcept
{
    return GetFixedText(name);
}

WStringView FormsInfoRecord::GetDevmodeName() const noexcept
{
    return GetName().substr(0, kDevmodeNameCapacity - 1);
}
