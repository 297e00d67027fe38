#include "complugins/customforms.h"

#include <exception>

#include <tvcore/customsizenumber.h>
#include <tvcore/datamodelids.h>
#include <tvutil/crc32.h>
#include <tvutil/dimension.h>
#include <tvutil/executioncontext.h>
#include <tvutil/tavlencomexception.h>
#include <tvutil/tavlenexception.h>
#include <tvutil/user.h>
#include <tvutil/utilitiesdllperthreadstorage.h>

namespace
{

using CustomForms::Size;

constexpr LONG kMessage = 5335; // under which the walk's failures are known
constexpr ThrowSite kWalk{W("MSDeviceCapabilities::GetCustomFormsCRC"), W("complugins\\msdevicecapabilities")};

CXString PathOf(const CXString& name)
{
    return CXString(CustomForms::kKey) + W("\\") + name.View();
}

void Report(const std::exception* exception, const WCHAR* detail) noexcept
{
    TavlenException::DisplayExceptionMessage(false, false, exception, kWalk.file, kWalk.line, kWalk.method,
                                             UtilitiesDllPerThreadStorage::GetExecutionContextStack(), nullptr,
                                             W("5335"), detail);
}

std::optional<Size> ReadSize(const User& user, const CXString& name)
{
    const CXString path = PathOf(name);
    const std::optional<DWORD> width = user.GetDword(path, CustomForms::kWidth);
    const std::optional<DWORD> length = user.GetDword(path, CustomForms::kLength);
    const std::optional<bool> isMetric = user.GetBoolean(path, CustomForms::kIsMetric);
    if (!width || !length || !isMetric || !CustomForms::IsLength(*width) || !CustomForms::IsLength(*length))
        return std::nullopt;
    return Size{name, static_cast<std::int32_t>(*width), static_cast<std::int32_t>(*length), *isMetric};
}

void LeaveOut(CustomForms::Walk& walk, const CXString& name, const std::exception& reason)
{
    walk.leftOut.push_back(name);
    Report(&reason, name.c_str());
}

void TakeUp(CustomForms::Walk& walk, FormsInfoRecord& record, Size size)
{
    record.paperId = CustomSizeNumber(size.name);
    record.width = size.width;
    record.length = size.length;
    record.units = size.isMetric ? DataModelIds::Value::UnitsMetric : DataModelIds::Value::UnitsInches;
    record.SetName(size.name); // and zeros behind it: nothing of a longer name before stays
    walk.crc = Crc32::GetCrc(&record, sizeof record, walk.crc);
    walk.sizes.push_back(std::move(size));
}

void WalkSize(CustomForms::Walk& walk, FormsInfoRecord& record, const User& user, const CXString& name)
{
    constexpr const WCHAR* kNoSize = W("the custom paper size \"%s\" has no width, length and units that can be read");
    try
    {
        if (std::optional<Size> size = ReadSize(user, name))
            TakeUp(walk, record, *std::move(size));
        else
            LeaveOut(walk, name, TavlenException(CXString::Format(kNoSize, {name}), kWalk));
    }
    catch (const TavlenComException& refusal)
    {
        // Of this key, and for as long as it is there. Of any other failure nobody knows what the next try brings:
        // caches that were filled without the size would be stale at once.
        if (refusal.GetHresult() != E_ACCESSDENIED)
            throw;
        LeaveOut(walk, name, refusal);
    }
}

void WalkRegistry(CustomForms::Walk& walk)
{
    const User user(CustomForms::kComponent);
    FormsInfoRecord record;
    record.formType = DataModelIds::PageSizeDriverCustom;
    for (const CXString& name : user.GetSubKeyNames(CustomForms::kKey))
        WalkSize(walk, record, user, name);
}

// Behind a failure that is to be told, whatever becomes of this.
void Withdraw(const User& user, const CXString& path) noexcept
{
    try
    {
        user.DeleteKey(path);
    }
    catch (const std::exception&)
    {
    }
}

std::int32_t TenthsOf(std::int32_t thousandths)
{
    return Dimension(thousandths, Dimension::Microns).GetValue(Dimension::TenthsOfAMillimeter).GetLongValue();
}

} // namespace

CustomForms::Walk CustomForms::WalkSizes() noexcept
{
    const ExecutionContextLifetime context(kWalk, kMessage);
    Walk walk;
    try
    {
        WalkRegistry(walk);
        return walk;
    }
    catch (const std::exception& exception)
    {
        Report(&exception, kKey);
    }
    catch (...)
    {
        Report(nullptr, kKey);
    }
    walk.isCutOff = true;
    return walk;
}

FormsInfoRecord CustomForms::FormOf(const Size& size)
{
    FormsInfoRecord form;
    form.paperId = CustomSizeNumber(size.name);
    form.width = TenthsOf(size.width);
    form.length = TenthsOf(size.length);
    form.units = size.isMetric ? DataModelIds::Value::UnitsMetric : DataModelIds::Value::UnitsInches;
    form.formType = DataModelIds::PageSizeDriverCustom;
    form.SetName(size.name);
    return form;
}

bool CustomForms::Add(const Size& size)
{
    return Add(size, DataCache::Lock(HKEY_CURRENT_USER));
}

// Whoever fills caches finds the whole size or none.
bool CustomForms::Add(const Size& size, const DataCache::Lock&)
{
    const User user(kComponent);
    const CXString path = PathOf(size.name);
    if (!user.CreateKey(path))
        return false;
    try
    {
        user.SetDword(path, kWidth, static_cast<DWORD>(size.width));
        user.SetDword(path, kLength, static_cast<DWORD>(size.length));
        user.SetBoolean(path, kIsMetric, size.isMetric);
        return true;
    }
    catch (const std::exception&)
    {
        Withdraw(user, path);
        throw;
    }
}

bool CustomForms::Remove(const CXString& name)
{
    const DataCache::Lock lock(HKEY_CURRENT_USER);
    return User(kComponent).DeleteKey(PathOf(name));
}
