#include <tvutil/textresourceloader.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <vector>

#include <tvutil/printer.h>

#include "threadslot.h"
#include "utilitiesstaticlib/slimlock.h"

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
        const SlimLock::Guard guard(m_lock);
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
        const SlimLock::Guard guard(m_lock);
        const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                        [&texts](const Entry& entry) { return entry.texts.lock() == texts; });
        return found != m_entries.end() ? found->ticket : Add(CXString(), texts);
    }

    Ticket Find(const CXString& printerName, bool forget)
    {
        const SlimLock::Guard guard(m_lock);
        if (forget)
            std::erase_if(m_entries,
                          [&](const Entry& entry) { return entry.printerName.CompareNoCase(printerName) == 0; });
        Ticket ticket = kNoTexts;
        (void)Newest(printerName, &ticket);
        return ticket;
    }

    std::shared_ptr<const Texts> Get(Ticket ticket)
    {
        const SlimLock::Guard guard(m_lock);
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

    SlimLock m_lock;
    std::vector<Entry> m_entries; // oldest first
    Ticket m_nextTicket = kFirstTicket;
};

// Ready when the library is loaded: a static of a function would be made when memory may be short.
TextRegistry g_registry;

// A number, not an owner: nobody ends what a thread's slot holds.
class TicketInForce
{
public:
    void Set(Ticket ticket) noexcept
    {
        static_assert(sizeof(Ticket) == sizeof(void*));
        m_ofThread.Set(std::bit_cast<void*>(ticket));
        m_newest = ticket;
    }

    // This thread's, or the one that any thread set last.
    [[nodiscard]] Ticket Get() const noexcept
    {
        const auto ofThread = std::bit_cast<Ticket>(m_ofThread.Get());
        return ofThread != kNeverInitialised ? ofThread : m_newest.load();
    }

private:
    ThreadSlot m_ofThread;
    std::atomic<Ticket> m_newest{kNeverInitialised};
};

constinit TicketInForce g_inForce;

} // namespace

std::shared_ptr<const Texts> TextResourceLoader::Share(const CXString& printerName, const Texts& texts)
{
    return g_registry.Share(printerName, texts);
}

bool TextResourceLoader::Initialize(HANDLE printer, bool forget)
{
    return Initialize(Printer(printer).GetPrinterName(), forget);
}

bool TextResourceLoader::Initialize(const CXString& printerName, bool forget)
{
    const Ticket ticket = g_registry.Find(printerName, forget);
    g_inForce.Set(ticket);
    return ticket != kNoTexts;
}

void TextResourceLoader::Initialize(const std::shared_ptr<const Texts>& texts)
{
    g_inForce.Set(g_registry.TicketOf(texts));
}

CXString TextResourceLoader::LoadStringW(std::int32_t number)
{
    const auto texts = g_registry.Get(g_inForce.Get());
    if (texts == nullptr)
        return {};
    const auto found = texts->find(number);
    return found != texts->end() ? found->second : CXString();
}
