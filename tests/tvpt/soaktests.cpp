// Many operations of all kinds, in a drawn order, in one process: what it holds does not grow. `make soak` runs the
// long form of it.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>

#include "boundprinter.h"
#include "devmodesettings.h"
#include "failure.h"
#include "footprint.h"
#include "hostrun.h"
#include "printschemadocument.h"

namespace
{

// Throws for what is no number.
std::size_t Number(const char* variable, std::size_t otherwise)
{
    const char* const text = std::getenv(variable);
    return text != nullptr ? std::stoul(text) : otherwise;
}

// A printer in the hands of a service, with the documents that go round.
class SoakedPrinter
{
public:
    explicit SoakedPrinter(const std::string& name)
        : m_name(name),
          m_bound(std::make_unique<BoundPrinter>(name, true)),
          m_devmode(m_bound->MakeDefaultDevmode()),
          m_ticket(m_bound->MakeBaseTicket(m_devmode))
    {
    }

    // The same each time, so that measurements compare.
    void StartAnew()
    {
        Bind(true);
        m_devmode = m_bound->MakeDefaultDevmode();
        m_ticket = m_bound->MakeBaseTicket(m_devmode);
    }

    void Do(std::mt19937& drawn)
    {
        switch (drawn() % 10)
        {
        case 0:
            Bind(drawn() % 4 != 0);
            break;
        case 1:
            m_devmode = m_bound->MakeDefaultDevmode();
            break;
        case 2:
            ApplySettings({"dmCopies=" + std::to_string(1 + drawn() % 99),
                           "dmPaperSize=" + std::to_string(1 + drawn() % 20),
                           "feature.43=" + std::to_string(1 + drawn() % 99), "app=" + std::to_string(drawn() % 9)},
                          m_devmode, nullptr);
            break;
        case 3:
        case 4:
            m_ticket = m_bound->MakeBaseTicket(m_devmode);
            [[fallthrough]];
        case 5: // the ticket of another time is what a caller merges into
            Provider().ConvertDevModeToPrintTicket(m_devmode, *m_ticket.Get(), m_name);
            break;
        case 6:
            m_bound->ApplyTicket(*m_ticket.Get(), m_devmode, m_name);
            Provider().ConvertPrintTicketToDevMode(*m_ticket.Get(), m_devmode, m_name);
            break;
        case 7:
            Provider().CompletePrintCapabilities(*m_ticket.Get(), *m_bound->MakeBaseCapabilities(m_devmode).Get(),
                                                 m_name);
            break;
        case 8:
            Provider().ValidatePrintTicket(*m_ticket.Get(), m_name);
            Provider().ExpandIntentOptions(*m_ticket.Get(), m_name);
            break;
        default:
            Refuse();
        }
    }

private:
    void Bind(bool hasCoreHelper)
    {
        m_bound.reset(); // before the next one binds
        m_bound = std::make_unique<BoundPrinter>(m_name, hasCoreHelper);
    }

    ProviderHost& Provider()
    {
        return m_bound->Provider();
    }

    // A root outside the framework is none.
    void Refuse()
    {
        const ComPtr<IXMLDOMDocument2> wrong = LoadDocument("<PrintTicket/>", "wrong");
        Devmode devmode = m_devmode;
        EXPECT_THROW(Provider().ConvertDevModeToPrintTicket(devmode, *wrong.Get(), m_name), Failure);
        EXPECT_THROW(Provider().ConvertPrintTicketToDevMode(*wrong.Get(), devmode, m_name), Failure);
        EXPECT_THROW(Provider().CompletePrintCapabilities(*m_ticket.Get(), *wrong.Get(), m_name), Failure);
    }

    std::string m_name;
    std::unique_ptr<BoundPrinter> m_bound;
    Devmode m_devmode;
    ComPtr<IXMLDOMDocument2> m_ticket;
};

using Soak = HostTest;

TEST_F(Soak, HoldsNoMoreAfterManyOperations)
{
    constexpr std::size_t kMoreMemory = 256 * 1024; // while the caches, of a bounded size, still fill
    const std::size_t operations = Number("TVPT_SOAK_OPERATIONS", 1000);
    const auto seed = static_cast<std::mt19937::result_type>(Number("TVPT_SOAK_SEED", 1));
    std::mt19937 drawn(seed);
    const ComApartment apartment;
    std::vector<std::unique_ptr<SoakedPrinter>> printers;
    for (const char* const model : kModels)
        printers.push_back(std::make_unique<SoakedPrinter>(InstallTestPrinter(model)));

    const auto measure = [&printers]
    {
        for (const auto& printer : printers)
            printer->StartAnew();
        return MeasureFootprint();
    };
    const auto work = [&](std::size_t times)
    {
        for (; times > 0; --times)
            printers[drawn() % printers.size()]->Do(drawn);
    };
    work(operations / 2);
    const Footprint before = measure();
    work(operations - operations / 2);
    const Footprint after = measure();
    std::printf("TVPT_SOAK_OPERATIONS=%zu TVPT_SOAK_SEED=%lu: after half of them %zu bytes and %zu handles, at the end "
                "%zu bytes and %zu handles\n",
                operations, static_cast<unsigned long>(seed), before.memory, before.handles, after.memory,
                after.handles);
    EXPECT_LE(after.memory, before.memory + kMoreMemory);
    EXPECT_LE(after.handles, before.handles);
}

} // namespace
