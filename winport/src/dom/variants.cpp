#include "dom/variants.h"

#include <charconv>
#include <string>

#include "dom/failure.h"
#include "dom/strings.h"
#include "oleauto.h"

namespace winport::dom
{

namespace
{

const VARIANT& Dereferenced(const VARIANT& value)
{
    return value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr ? *value.pvarVal : value;
}

std::string Decimal(LONGLONG number)
{
    return std::to_string(number);
}

} // namespace

BSTR NewTextOf(const VARIANT& value)
{
    const VARIANT& held = Dereferenced(value);
    if (BSTR const* const string = StringOf(held); string != nullptr)
        return NewBstr(BstrView(*string));
    switch (held.vt)
    {
    case VT_EMPTY:
    case VT_NULL:
        return NewBstr(std::string_view());
    case VT_I2:
        return NewBstr(Decimal(held.iVal));
    case VT_I4:
    case VT_INT:
        return NewBstr(Decimal(held.lVal));
    case VT_UI4:
        return NewBstr(Decimal(held.ulVal));
    case VT_BOOL:
        return NewBstr(Decimal(held.boolVal));
    default:
        throw Failure{E_INVALIDARG};
    }
}

std::optional<LONG> NumberOf(const VARIANT& value)
{
    const VARIANT& held = Dereferenced(value);
    if (held.vt == VT_I2)
        return held.iVal;
    if (held.vt == VT_I4 || held.vt == VT_INT || held.vt == VT_UI4)
        return held.lVal;
    BSTR const* const string = StringOf(held);
    if (string == nullptr)
        return std::nullopt;
    const std::string text = Utf8Of(*string);
    LONG number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

BSTR const* StringOf(const VARIANT& value)
{
    const VARIANT& held = Dereferenced(value);
    if (held.vt == VT_BSTR)
        return &held.bstrVal;
    return held.vt == (VT_BYREF | VT_BSTR) ? held.pbstrVal : nullptr;
}

void SetEmpty(VARIANT& target, VARTYPE type)
{
    VariantInit(&target);
    target.vt = type;
}

void SetString(VARIANT& target, BSTR owned)
{
    SetEmpty(target, VT_BSTR);
    target.bstrVal = owned;
}

} // namespace winport::dom
