#include "complugins/ptpcprovider/pagemediasizeoptions.h"

#include <tvutil/tavlencomexception.h>

namespace
{

constexpr ThrowSite kGetOptionName{W("TavlenPtProvider::GetMsPageMediaSizeOptionName"),
                                   W("complugins\\ptpcprovider\\pagemediasizeimpl")};

// Numbers of the printer only: a form's name is somebody's text.
CXString PrivateName(const WCHAR* kind, const FormsInfoRecord& form)
{
    return CXString::Format(
        W("%s%u_%ux%u"), {kind, ULONG{form.paperId}, static_cast<ULONG>(form.width), static_cast<ULONG>(form.length)});
}

std::optional<PageMediaSize::OptionName> NameInDictionary(const FormsInfoRecord& form,
                                                          const PageSizeDictionary& dictionary)
{
    const Dimension width(form.width, Dimension::TenthsOfAMillimeter);
    const Dimension length(form.length, Dimension::TenthsOfAMillimeter);
    for (const PageSizeDictionaryEntry& entry : dictionary.GetPageSizeEntryRefs(width, length))
    {
        if (entry.GetValueId().GetValueEnum() != form.valueId)
            continue;
        const auto index = entry.IsPredefinedMsOptionName() ? PrintSchema::Keywords : PrintSchema::PrivateKeywords;
        return PageMediaSize::OptionName{entry.GetMsPageMediaSizeOptionName(), index};
    }
    return std::nullopt;
}

} // namespace

std::optional<PageMediaSize::OptionName> PageMediaSize::NameOfForm(const FormsInfoRecord& form,
                                                                   const PageSizeDictionary& dictionary)
{
    switch (form.formType)
    {
    case DataModelIds::PageSizeUserForm:
        return OptionName{PrivateName(W("UserForm_"), form), PrintSchema::PrivateKeywords};
    case DataModelIds::PageSizeDriverCustom:
        return OptionName{PrivateName(W("DriverCustomSize_"), form), PrintSchema::PrivateKeywords};
    case DataModelIds::PageSizeStandard:
    case DataModelIds::PageSizeExtended:
    case DataModelIds::PageSizeDriverForm:
        return NameInDictionary(form, dictionary);
    default:
        ThrowComException(E_FAIL, kGetOptionName);
    }
}

void PageMediaSize::AppendSizeProperties(const PrintSchemaXmlDocument& document, IXMLDOMNode* option,
                                         const CustomOption* custom, const FormsInfoRecord& form)
{
    const CXString prefix = document.GetNsPrefix(PrintSchema::Keywords);
    if (custom == nullptr)
    {
        document.AppendChildIntegerScoredProperty(option, prefix + PropertyOf(Meaning::Width, kCustomMediaSize),
                                                  MicronsOf(form.width));
        document.AppendChildIntegerScoredProperty(option, prefix + PropertyOf(Meaning::Height, kCustomMediaSize),
                                                  MicronsOf(form.length));
        return;
    }
    for (const CustomProperty& property : custom->properties)
    {
        ComPtr<IXMLDOMElement> reference;
        document.AppendChildParameterRefScoredProperty(option, prefix + property.name, prefix + property.parameter,
                                                       reference.Put());
    }
}

LONG PageMediaSize::MicronsOf(std::int32_t tenths)
{
    return Dimension(tenths, Dimension::TenthsOfAMillimeter).GetValue(Dimension::Microns).GetLongValue();
}

std::int32_t PageMediaSize::TenthsOf(LONG microns)
{
    return Dimension(microns, Dimension::Microns).GetValue(Dimension::TenthsOfAMillimeter).GetLongValue();
}
