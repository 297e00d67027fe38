// CoreHelper: the core driver's helper object that the PrintTicket service gives to a provider, played for a printer
// model: the core driver's settings in a devmode by their keywords.
//
// What the model does not have is no option of it: resolutions that it does not list, colour on a monochrome device. It
// is not listed and not set; where a devmode has it all the same, it is read.
// A devmode is changed as a whole or not at all. As the interface promises and no longer, strings and lists that are
// handed out are valid until the next call. A COM object: made with one reference, one thread at a time.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <vector>

#include <tvcore/printermodel.h>

#include "complugins/msdevmodebase.h"
#include "interfaces/prcomoem.h"
#include "utilitiesstaticlib/comptr.h"

class CoreHelper : public IPrintCoreHelper
{
public:
    [[nodiscard]] static ComPtr<CoreHelper> Make(const PrinterModel& model);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // E_INVALIDARG for a devmode that does not lie within its size, and for a feature that the driver does not have;
    // E_FAIL when what the devmode has is no option of any such driver, and for a setting in a private part that is
    // none of the driver's.
    HRESULT STDMETHODCALLTYPE GetOption(const DEVMODEW* devmode, DWORD devmodeSize, PCSTR featureKeyword,
                                        PCSTR* optionKeyword) override;
    // The same. Settings of this driver never conflict: `result` is always "no conflict".
    HRESULT STDMETHODCALLTYPE SetOptions(DEVMODEW* devmode, DWORD devmodeSize, BOOL resolveConflicts,
                                         const PRINT_FEATURE_OPTION* pairs, DWORD pairCount, DWORD* pairsWritten,
                                         DWORD* result) override;
    HRESULT STDMETHODCALLTYPE EnumConstrainedOptions(const DEVMODEW* devmode, DWORD devmodeSize, PCSTR featureKeyword,
                                                     PCSTR** optionKeywords, DWORD* optionCount) override;
    HRESULT STDMETHODCALLTYPE WhyConstrained(const DEVMODEW* devmode, DWORD devmodeSize, PCSTR featureKeyword,
                                             PCSTR optionKeyword, const PRINT_FEATURE_OPTION** constraints,
                                             DWORD* constraintCount) override;
    HRESULT STDMETHODCALLTYPE EnumFeatures(PCSTR** featureKeywords, DWORD* featureCount) override;
    HRESULT STDMETHODCALLTYPE EnumOptions(PCSTR featureKeyword, PCSTR** optionKeywords, DWORD* optionCount) override;
    // A printer model names no fonts: E_NOTIMPL.
    HRESULT STDMETHODCALLTYPE GetFontSubstitution(PCWSTR trueTypeFontName, PCWSTR* deviceFontName) override;
    HRESULT STDMETHODCALLTYPE SetFontSubstitution(PCWSTR trueTypeFontName, PCWSTR deviceFontName) override;
    HRESULT STDMETHODCALLTYPE CreateInstanceOfMSXMLObject(REFCLSID classId, IUnknown* outer, DWORD context, REFIID riid,
                                                          PVOID* object) override;

protected:
    explicit CoreHelper(const PrinterModel& model);
    virtual ~CoreHelper();

private:
    // The keywords handed out last.
    class Keywords
    {
    public:
        void Assign(const std::vector<std::string>& keywords);
        [[nodiscard]] PCSTR* Get() noexcept;
        [[nodiscard]] DWORD Count() const noexcept;

    private:
        std::vector<std::vector<char>> m_texts; // in blocks of their own: whoever keeps a pointer too long is found out
        std::vector<PCSTR> m_pointers;
    };

    [[nodiscard]] std::vector<std::string> FeatureKeywords() const;
    [[nodiscard]] std::vector<std::string> OptionsOf(std::string_view featureKeyword) const;
    [[nodiscard]] bool HasOption(const MsDevmodeBase::Feature& feature, const MsDevmodeValueRow& row) const;
    [[nodiscard]] bool HasOption(const PRINT_FEATURE_OPTION& pair) const;

    std::atomic<ULONG> m_references = 1;
    MsDriverKind m_driver;
    std::vector<MsDevmodeBase::Feature> m_features; // those that have a keyword, each keyword once
    std::vector<std::uint32_t> m_resolutions;       // as the devmode has them
    bool m_isColor;
    Keywords m_answer;
};
