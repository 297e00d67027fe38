// Forms. They belong to the server, whatever handle asks.
#include <winspool.h>

#include <algorithm>

#include "spooler/bufferwriter.h"
#include "spooler/formtable.h"
#include "spooler/names.h"
#include "spooler/printerhandle.h"
#include "spooler/store.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

constexpr std::size_t kLongestName = CCHFORMNAME - 1; // a DEVMODEW must be able to hold it

struct Form
{
    std::u16string name;
    DWORD flags = 0;
    SIZEL size{};
    RECTL area{};
};

FORM_INFO_1W Info1(const Form& form, BufferWriter& writer)
{
    return {.Flags = form.flags, .pName = writer.Text(form.name), .Size = form.size, .ImageableArea = form.area};
}

Form FormOf(const BuiltInForm& form)
{
    return {std::u16string(form.name), FORM_BUILTIN, {form.width, form.height}, {0, 0, form.width, form.height}};
}

bool IsBuiltIn(std::u16string_view name)
{
    return std::any_of(std::begin(kBuiltInForms), std::end(kBuiltInForms),
                       [&](const BuiltInForm& form) { return form.name == name; });
}

std::vector<Form> ReadForms(const PrinterHandle& handle)
{
    std::vector<Form> forms;
    std::transform(std::begin(kBuiltInForms), std::end(kBuiltInForms), std::back_inserter(forms), FormOf);

    const auto number = [](Statement& row)
    {
        return static_cast<LONG>(row.Integer());
    };
    Store store(handle.folder);
    Statement row = store.Prepare("SELECT name, flags, width, height, area_left, area_top, area_right, area_bottom"
                                  " FROM forms ORDER BY id");
    while (row.Step())
    {
        Form& form = forms.emplace_back();
        form.name = row.Text();
        form.flags = row.Number();
        for (LONG* value :
             {&form.size.cx, &form.size.cy, &form.area.left, &form.area.top, &form.area.right, &form.area.bottom})
            *value = number(row);
    }
    return forms;
}

void RequireGoodForm(const FORM_INFO_1W& form)
{
    const std::u16string_view name = ViewOf(form.pName);
    Require(!name.empty() && name.size() <= kLongestName, ERROR_INVALID_FORM_NAME);
    Require(form.Flags == FORM_USER || form.Flags == FORM_PRINTER, ERROR_INVALID_PARAMETER);
    const RECTL& area = form.ImageableArea;
    Require(form.Size.cx > 0 && form.Size.cy > 0 && area.left >= 0 && area.top >= 0 && area.left <= area.right &&
                area.top <= area.bottom && area.right <= form.Size.cx && area.bottom <= form.Size.cy,
            ERROR_INVALID_FORM_SIZE);
}

std::shared_ptr<const PrinterHandle> FindFormsAdministerHandle(HANDLE printer)
{
    auto handle = FindHandle(printer);
    const ACCESS_MASK needed = handle->printer == 0 ? SERVER_ACCESS_ADMINISTER : PRINTER_ACCESS_ADMINISTER;
    Require((handle->access & needed) != 0, ERROR_ACCESS_DENIED);
    return handle;
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

BOOL WINAPI AddFormW(HANDLE printer, DWORD level, LPBYTE form)
{
    return Succeeds(
        [&]
        {
            const auto handle = FindFormsAdministerHandle(printer);
            Require(level == 1, ERROR_INVALID_LEVEL);
            Require(form != nullptr, ERROR_INVALID_PARAMETER);
            const auto& info = *reinterpret_cast<const FORM_INFO_1W*>(form);
            RequireGoodForm(info);
            Require(!IsBuiltIn(ViewOf(info.pName)), ERROR_ALREADY_EXISTS);

            Store store(handle->folder);
            Transaction transaction(store, Transaction::Kind::Write);
            store
                .Prepare("INSERT INTO forms(name, flags, width, height, area_left, area_top, area_right, area_bottom)"
                         " VALUES (?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT DO NOTHING")
                .Bind(ViewOf(info.pName))
                .Bind(info.Flags)
                .Bind(info.Size.cx)
                .Bind(info.Size.cy)
                .Bind(info.ImageableArea.left)
                .Bind(info.ImageableArea.top)
                .Bind(info.ImageableArea.right)
                .Bind(info.ImageableArea.bottom)
                .Execute();
            Require(store.Changes() == 1, ERROR_ALREADY_EXISTS);
            transaction.Commit();
        });
}

BOOL WINAPI DeleteFormW(HANDLE printer, LPWSTR formName)
{
    return Succeeds(
        [&]
        {
            const auto handle = FindFormsAdministerHandle(printer);
            Require(!IsBuiltIn(ViewOf(formName)), ERROR_INVALID_PARAMETER);
            Store store(handle->folder);
            Transaction transaction(store, Transaction::Kind::Write);
            store.Prepare("DELETE FROM forms WHERE name = ?").Bind(ViewOf(formName)).Execute();
            Require(store.Changes() == 1, ERROR_INVALID_FORM_NAME);
            transaction.Commit();
        });
}

BOOL WINAPI GetFormW(HANDLE printer, LPWSTR formName, DWORD level, LPBYTE form, DWORD size, LPDWORD needed)
{
    return Succeeds(
        [&]
        {
            const auto handle = FindHandle(printer);
            const CallerBuffer buffer{form, size, needed};
            RequireUsable(buffer);
            Require(level == 1, ERROR_INVALID_LEVEL);
            std::vector<Form> forms = ReadForms(*handle);
            std::erase_if(forms, [&](const Form& candidate) { return candidate.name != ViewOf(formName); });
            Require(!forms.empty(), ERROR_INVALID_FORM_NAME);
            AnswerRecords<FORM_INFO_1W>(buffer, nullptr, ERROR_INSUFFICIENT_BUFFER, forms, Info1);
        });
}

BOOL WINAPI EnumFormsW(HANDLE printer, DWORD level, LPBYTE forms, DWORD size, LPDWORD needed, LPDWORD returned)
{
    return Succeeds(
        [&]
        {
            const auto handle = FindHandle(printer);
            const CallerBuffer buffer{forms, size, needed};
            RequireUsable(buffer, returned);
            Require(level == 1, ERROR_INVALID_LEVEL);
            AnswerRecords<FORM_INFO_1W>(buffer, returned, ERROR_INSUFFICIENT_BUFFER, ReadForms(*handle), Info1);
        });
}
