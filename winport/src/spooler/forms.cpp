// Forms: the platform's own. They belong to the server, whatever handle asks.
#include <winspool.h>

#include <algorithm>
#include <span>

#include "spooler/bufferwriter.h"
#include "spooler/formtable.h"
#include "spooler/names.h"
#include "spooler/printerhandle.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

FORM_INFO_1W Info1(const BuiltInForm& form, BufferWriter& writer)
{
    return {
        .Flags = FORM_BUILTIN,
        .pName = writer.Text(form.name),
        .Size = {form.width, form.height},
        .ImageableArea = {0, 0, form.width, form.height},
    };
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

BOOL WINAPI GetFormW(HANDLE printer, LPWSTR formName, DWORD level, LPBYTE form, DWORD size, LPDWORD needed)
{
    return Succeeds(
        [&]
        {
            FindHandle(printer);
            const CallerBuffer buffer{form, size, needed};
            RequireUsable(buffer);
            Require(level == 1, ERROR_INVALID_LEVEL);
            const auto* const found =
                std::find_if(std::begin(kBuiltInForms), std::end(kBuiltInForms),
                             [&](const BuiltInForm& candidate) { return candidate.name == ViewOf(formName); });
            Require(found != std::end(kBuiltInForms), ERROR_INVALID_FORM_NAME);
            AnswerRecords<FORM_INFO_1W>(buffer, nullptr, ERROR_INSUFFICIENT_BUFFER, std::span(found, 1), Info1);
        });
}

BOOL WINAPI EnumFormsW(HANDLE printer, DWORD level, LPBYTE forms, DWORD size, LPDWORD needed, LPDWORD returned)
{
    return Succeeds(
        [&]
        {
            FindHandle(printer);
            const CallerBuffer buffer{forms, size, needed};
            RequireUsable(buffer, returned);
            Require(level == 1, ERROR_INVALID_LEVEL);
            AnswerRecords<FORM_INFO_1W>(buffer, returned, ERROR_INSUFFICIENT_BUFFER, std::span(kBuiltInForms), Info1);
        });
}
