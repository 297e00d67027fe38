// MsDevmodeUsingIPrintCoreHelper: the core driver's settings, asked of the core driver itself by their keywords.
//
// Also throws ExceptionIPrintCoreHelperReadFailure and ExceptionIPrintCoreHelperWriteFailure, for a helper that fails,
// has no answer or takes nothing. Whatever the core driver does meanwhile to the devmode's paper is undone, and so is
// another size that it notes: the devmode's memory is what its owner says.
#pragma once

#include <windows.h>

#include <cstdint>
#include <iterator>
#include <optional>

#include "complugins/msdevmodebase.h"
#include "interfaces/prcomoem.h"
#include "utilitiesstaticlib/comptr.h"

class MsDevmodeUsingIPrintCoreHelper final : public MsDevmodeBase
{
public:
    // What is asked first for a setting that the core driver and the public devmode both have. Known by number.
    enum AccessMode : int
    {
        PublicFirst = 3,
        KeywordFirst = 5,
    };

    // `size` is that of the devmode, dmSize + dmDriverExtra. Null throws ExceptionInvalidArgumentNullPointer.
    MsDevmodeUsingIPrintCoreHelper(HANDLE printer, IPrintCoreHelper* helper, DEVMODEW* devmode, DWORD size);
    MsDevmodeUsingIPrintCoreHelper(const MsDriverKind& driver, IPrintCoreHelper* helper, DEVMODEW* devmode, DWORD size);

    // KeywordFirst when nobody says otherwise. Writing always goes by the keyword.
    void SetAccessMode(AccessMode mode) noexcept;

    [[nodiscard]] std::uint32_t GetMsFeatureValue(std::uint32_t feature, Map map) override;
    void SetMsFeatureValue(std::uint32_t feature, std::uint32_t value, Map map) override;

    // Whether the driver reports a current option, one that is not empty, for the feature's keyword.
    [[nodiscard]] bool HasCurrentOption(std::uint32_t feature);

private:
    // Keeps the devmode's paper and the sizes of its parts while it lives; of nested ones the outermost.
    class PaperState
    {
    public:
        explicit PaperState(MsDevmodeUsingIPrintCoreHelper& owner) noexcept;
        ~PaperState();
        PaperState(const PaperState&) = delete;
        PaperState& operator=(const PaperState&) = delete;

    private:
        MsDevmodeUsingIPrintCoreHelper& m_owner;
    };

    struct Paper
    {
        WCHAR formName[std::size(DEVMODEW{}.dmFormName)];
        short number;
        short width;
        short length;
        DWORD fields;
        WORD publicSize;
        WORD driverExtra;
    };

    // Nothing when the public devmode has no such field, or, mapped, its value is no option.
    [[nodiscard]] std::optional<std::uint32_t> FindPublicValue(std::uint32_t feature, Map map) const;
    [[nodiscard]] const char* KeywordOf(std::uint32_t feature) const noexcept;
    // Null when the helper fails or has none. Valid until its next call.
    [[nodiscard]] PCSTR GetOption(const char* keyword, HRESULT& result);
    // S_OK only when the option was taken; otherwise the devmode is as it was.
    [[nodiscard]] HRESULT SetOption(const PRINT_FEATURE_OPTION& pair);

    ComPtr<IPrintCoreHelper> m_helper;
    DWORD m_size;
    bool m_hasPaper; // as the devmode was at first, whatever a core driver makes of its size
    AccessMode m_accessMode = KeywordFirst;
    int m_paperDepth = 0;
    Paper m_paper{};
};
