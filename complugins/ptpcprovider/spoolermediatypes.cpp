#include "complugins/ptpcprovider/spoolermediatypes.h"

#include <windows.h>

#include <winspool.h>

#include <algorithm>
#include <cstddef>

#include "complugins/fixedtext.h"

namespace
{

// For a driver that reports more when it is asked again.
constexpr std::size_t kSpareEntries = 10;

// No printer has as many media types: a first answer above this is no answer.
constexpr int kMostEntries = 10000;

struct MediaTypeName
{
    WCHAR text[64]; // not terminated where the name fills it
};

class Question
{
public:
    Question(const CXString& printerName, const DEVMODEW* devmode) noexcept
        : m_printerName(printerName), m_devmode(devmode)
    {
    }

    // The number of entries; nothing below 1 is an answer. The platform takes every list as text.
    [[nodiscard]] int Ask(WORD capability, void* list = nullptr) const
    {
        return DeviceCapabilitiesW(m_printerName.c_str(), nullptr, capability, static_cast<LPWSTR>(list), m_devmode);
    }

private:
    const CXString& m_printerName;
    const DEVMODEW* m_devmode;
};

struct Lists
{
    std::vector<DWORD> ids;
    std::vector<MediaTypeName> names;
    int idCount = 0;
    int nameCount = 0;

    explicit Lists(std::size_t room) : ids(room), names(room)
    {
    }

    void Fetch(const Question& question)
    {
        // What an earlier answer has left is not taken for a later one's.
        std::fill(ids.begin(), ids.end(), DWORD());
        std::fill(names.begin(), names.end(), MediaTypeName());
        idCount = question.Ask(DC_MEDIATYPES, ids.data());
        nameCount = question.Ask(DC_MEDIATYPENAMES, names.data());
    }

    [[nodiscard]] bool DisagreeWithinTheirRoom() const noexcept
    {
        return nameCount > 0 && nameCount != idCount &&
               nameCount <= static_cast<LONGLONG>(idCount) + static_cast<LONGLONG>(kSpareEntries);
    }

    // More than there was room for is cut: only what fits can have been written.
    [[nodiscard]] std::size_t Count() const noexcept
    {
        return nameCount > 0 && nameCount == idCount ? std::min(static_cast<std::size_t>(nameCount), ids.size()) : 0;
    }
};

} // namespace

std::vector<PrinterModel::MediaType> AskSpoolerMediaTypes(const CXString& printerName, const DEVMODEW* devmode)
{
    const Question question(printerName, devmode);
    const int count = question.Ask(DC_MEDIATYPES);
    if (count <= 0 || count > kMostEntries)
        return {};
    Lists lists(static_cast<std::size_t>(count) + kSpareEntries);
    lists.Fetch(question);
    if (lists.DisagreeWithinTheirRoom())
        lists.Fetch(question);

    std::vector<PrinterModel::MediaType> mediaTypes(lists.Count());
    for (std::size_t at = 0; at < mediaTypes.size(); ++at)
        mediaTypes[at] = {static_cast<std::int32_t>(lists.ids[at]), CXString(GetFixedText(lists.names[at].text))};
    return mediaTypes;
}
