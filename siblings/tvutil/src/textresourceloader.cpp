#include <tvutil/textresourceloader.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

#include <tvutil/printer.h>

namespace
{

using Texts = TextResourceLoader::Texts;
using Ticket = std::uint64_t; // names one set of texts, for the life of the process

constexpr Ticket kNeverInitialised = 0;
constexpr Ticket kNoTexts = 1;
constexpr Ticket kFirstTicket = 2;

class TextRegistry
{
public:
    std::shared_ptr<const Texts> Share(const CXString& printerName, const Texts& texts)
    {
        const std::lock_guard guard(m_mutex);
        std::erase_if(m_entries, [](const Entry& entry) { return entry.texts.expired(); });
        if (auto known = Newest(printerName); known != nullptr && *known == texts)
            return known;
        std::shared_ptr<const Texts> shared = std::make_shared<const Texts>(texts);
        (void)Add(printerName, shared);
        return shared;
    }

    // They may have been forgotten as their printer's, or never have been any printer's.
    Ticket TicketOf(const std::shared_ptr<const Texts>& texts)
    {
        if (texts == nullptr)
            return kNoTexts;
        const std::lock_guard guard(m_mutex);
        const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                        [&texts](const Entry& entry) { return entry.texts.lock() == texts; });
        return found != m_entries.end() ? found->ticket : Add(CXString(), texts);
    }

    Ticket Find(const CXString& printerName, bool forget)
    {
        const std::lock_guard guard(m_mutex);
        if (forget)
            std::erase_if(m_entries,
                          [&](const Entry& entry) { return entry.printerName.CompareNoCase(printerName) == 0; });
        Ticket ticket = kNoTexts;
        (void)Newest(printerName, &ticket);
        return ticket;
    }

    std::shared_ptr<const Texts> Get(Ticket ticket)
    {
        const std::lock_guard guard(m_mutex);
        const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                        [ticket](const Entry& entry) { return entry.ticket == ticket; });
        return found != m_entries.end() ? found->texts.lock() : nullptr;
    }

private:
    struct Entry
    {
        Ticket ticket;
        CXString printerName;
        std::weak_ptr<const Texts> texts;
    };

    Ticket Add(const CXString& printerName, const std::shared_ptr<const Texts>& texts)
    {
        m_entries.push_back({m_nextTicket, printerName, texts});
        return m_nextTicket++;
    }

    std::shared_ptr<const Texts> Newest(const CXString& printerName, Ticket* ticket = nullptr) const
    {
        if (printerName.IsEmpty()) // of no printer
            return nullptr;
        for (auto entry = m_entries.rbegin(); entry != m_entries.rend(); ++entry)
            if (entry->printerName.CompareNoCase(printerName) == 0)
                if (auto texts = entry->texts.lock())
                {
                    if (ticket != nullptr)
                        *ticket = entry->ticket;
                    return texts;
                }
        return nullptr;
    }

    std::mutex m_mutex;
    std::vector<Entry> m_entries; // oldest first
    Ticket m_nextTicket = kFirstTicket;
};

TextRegistry& Registry()
{
    static TextRegistry registry;
    return registry;
}

// A number, not an owner: storage of a thread with a destructor would pin this library until the thread ends.
thread_local Ticket t_inForce = kNeverInitialised;
std::atomic<Ticket> g_inForce{kNeverInitialised};

} // namespace

std::shared_ptr<const Texts> TextResourceLoader::Share(const CXString& printerName, const Texts& texts)
{
    return Registry().Share(printerName, texts);
}

bool TextResourceLoader::Initialize(HANDLE printer, bool forget)
{
    return Initialize(Printer(printer).GetPrinterName(), forget);
}

bool TextResourceLoader::Initialize(const CXString& printerName, bool forget)
{
    t_inForce = Registry().Find(printerName, forget);
    g_inForce = t_inForce;
    return t_inForce != kNoTexts;
}

void TextResourceLoader::Initialize(const std::shared_ptr<const Texts>& texts)
{
    t_inForce = Registry().TicketOf(texts);
    g_inForce = t_inForce;
}

CXString TextResourceLoader::LoadStringW(std::int32_t number)
{
    const auto texts = Registry().Get(t_inForce != kNeverInitialised ? t_inForce : g_inForce.load());
    if (texts == nullptr)
        return {};
    const auto found = texts->find(number);
    return found != texts->end() ? found->second : CXString();
}
