#include "complugins/msdevmodeusingiprintcorehelper.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\msdevmodeusingiprintcorehelper");

// The places that exceptions name, with the lines that the system reports for them.
constexpr ThrowSite kConstructor{W("MsDevmodeUsingIPrintCoreHelper::MsDevmodeUsingIPrintCoreHelper"), kSourceFile};
constexpr ThrowSite kReading{W("MsDevmodeUsingIPrintCoreHelper::GetMsFeatureValue"), kSourceFile, 329};
constexpr ThrowSite kWriting{W("MsDevmodeUsingIPrintCoreHelper::SetMsFeatureValue"), kSourceFile, 464};

constexpr DWORD kPaperFields = DM_FORMNAME | DM_PAPERSIZE | DM_PAPERWIDTH | DM_PAPERLENGTH;
static_assert(kPaperFields == 0x1000E);
constexpr std::size_t kPaperEnd = offsetof(DEVMODEW, dmFormName) + sizeof(DEVMODEW::dmFormName);
static_assert(kPaperEnd > offsetof(DEVMODEW, dmPaperWidth)); // the last of the paper's fields

} // namespace

MsDevmodeUsingIPrintCoreHelper::MsDevmodeUsingIPrintCoreHelper(HANDLE printer, IPrintCoreHelper* helper,
                                                               DEVMODEW* devmode, DWORD size)
    : MsDevmodeUsingIPrintCoreHelper(MsDriverKind::OfPrinter(printer), helper, devmode, size)
{
}

MsDevmodeUsingIPrintCoreHelper::MsDevmodeUsingIPrintCoreHelper(const MsDriverKind& driver, IPrintCoreHelper* helper,
                                                               DEVMODEW* devmode, DWORD size)
    : MsDevmodeBase(driver, devmode), m_helper(helper), m_size(size), m_hasPaper(devmode->dmSize >= kPaperEnd)
{
    if (helper == nullptr)
        ThrowException<ExceptionInvalidArgumentNullPointer>(kConstructor);
}

void MsDevmodeUsingIPrintCoreHelper::SetAccessMode(AccessMode mode) noexcept
{
    m_accessMode = mode;
}

std::uint32_t MsDevmodeUsingIPrintCoreHelper::GetMsFeatureValue(std::uint32_t feature, Map map)
{
    if (m_accessMode == PublicFirst)
        if (const std::optional<std::uint32_t> value = FindPublicValue(feature, map))
            return *value;
    const char* const keyword = KeywordOf(feature);
    if (keyword == nullptr)
        return GetPublicDmFeatureValue_Helper(GetDevmode(), feature, map);
    HRESULT result = S_OK;
    const PCSTR option = GetOption(keyword, result);
    if (option == nullptr)
        ThrowException<ExceptionIPrintCoreHelperReadFailure>(
            kReading, W("the core driver has no option of \"%s\" (feature %u): %u"),
            {CXString::FromUtf8(keyword), feature, static_cast<ULONG>(result)});
    return GetFeatureValueFromIPrintCoreHelperValue_Helper(feature, option, map);
}

void MsDevmodeUsingIPrintCoreHelper::SetMsFeatureValue(std::uint32_t feature, std::uint32_t value, Map map)
{
    const char* const keyword = KeywordOf(feature);
    if (keyword == nullptr)
        return SetPublicDmFeatureValue_Helper(GetDevmode(), feature, value, map);
    const PRINT_FEATURE_OPTION pair{
        keyword, GetIPrintCoreHelperValueFromFeatureValue_Helper(feature, ToDevmodeValue(feature, value, map))};
    const HRESULT result = SetOption(pair);
    if (result != S_OK)
        ThrowException<ExceptionIPrintCoreHelperWriteFailure>(
            kWriting, W("the core driver did not take \"%s\" for \"%s\" (feature %u): %u"),
            {CXString::FromUtf8(pair.pszOption), CXString::FromUtf8(keyword), feature, static_cast<ULONG>(result)});
}

bool MsDevmodeUsingIPrintCoreHelper::HasCurrentOption(std::uint32_t feature)
{
    const char* const keyword = KeywordOf(feature);
    HRESULT result = S_OK;
    return keyword != nullptr && GetOption(keyword, result) != nullptr;
}

std::optional<std::uint32_t> MsDevmodeUsingIPrintCoreHelper::FindPublicValue(std::uint32_t feature, Map map) const
{
    bool isFound = false;
    const std::uint32_t value = GetPublicDmFeatureValue_Helper(GetDevmode(), feature, Raw, &isFound);
    if (!isFound)
        return std::nullopt;
    if (map != DataModel)
        return value;
    const Feature* const row = FindFeature(feature);
    const MsDevmodeValueRow* const option =
        row != nullptr ? MsDevmodeValues::FindDevmodeValue(row->values, value) : nullptr;
    return option != nullptr ? std::optional(static_cast<std::uint32_t>(option->valueId)) : std::nullopt;
}

const char* MsDevmodeUsingIPrintCoreHelper::KeywordOf(std::uint32_t feature) const noexcept
{
    const Feature* const row = FindFeature(feature);
    return row != nullptr ? row->keyword : nullptr;
}

PCSTR MsDevmodeUsingIPrintCoreHelper::GetOption(const char* keyword, HRESULT& result)
{
    PCSTR option = nullptr;
    const PaperState paper(*this);
    result = m_helper->GetOption(GetDevmode(), m_size, keyword, &option);
    return SUCCEEDED(result) && option != nullptr && *option != '\0' ? option : nullptr;
}

// On a copy: who fails may have changed it all the same.
HRESULT MsDevmodeUsingIPrintCoreHelper::SetOption(const PRINT_FEATURE_OPTION& pair)
{
    std::vector<std::byte> copy(m_size);
    std::memcpy(copy.data(), GetDevmode(), copy.size());
    const PaperState paper(*this);
    DWORD written = 0;
    DWORD conflicts = 0; // the data model's to resolve
    const HRESULT result =
        m_helper->SetOptions(reinterpret_cast<DEVMODEW*>(copy.data()), m_size, FALSE, &pair, 1, &written, &conflicts);
    if (FAILED(result))
        return result;
    if (written == 0)
        return E_FAIL;
    std::memcpy(GetDevmode(), copy.data(), copy.size());
    return S_OK;
}

MsDevmodeUsingIPrintCoreHelper::PaperState::PaperState(MsDevmodeUsingIPrintCoreHelper& owner) noexcept : m_owner(owner)
{
    const DEVMODEW& devmode = *owner.GetDevmode();
    if (owner.m_paperDepth++ > 0)
        return;
    owner.m_paper.publicSize = devmode.dmSize;
    owner.m_paper.driverExtra = devmode.dmDriverExtra;
    if (!owner.m_hasPaper)
        return;
    std::copy(std::begin(devmode.dmFormName), std::end(devmode.dmFormName), std::begin(owner.m_paper.formName));
    owner.m_paper.number = devmode.dmPaperSize;
    owner.m_paper.width = devmode.dmPaperWidth;
    owner.m_paper.length = devmode.dmPaperLength;
    owner.m_paper.fields = devmode.dmFields & kPaperFields;
}

MsDevmodeUsingIPrintCoreHelper::PaperState::~PaperState()
{
    DEVMODEW& devmode = *m_owner.GetDevmode();
    if (--m_owner.m_paperDepth > 0)
        return;
    const Paper& paper = m_owner.m_paper;
    devmode.dmSize = paper.publicSize;
    devmode.dmDriverExtra = paper.driverExtra;
    if (!m_owner.m_hasPaper)
        return;
    std::copy(std::begin(paper.formName), std::end(paper.formName), std::begin(devmode.dmFormName));
    devmode.dmPaperSize = paper.number;
    devmode.dmPaperWidth = paper.width;
    devmode.dmPaperLength = paper.length;
    devmode.dmFields = (devmode.dmFields & ~kPaperFields) | paper.fields;
}
