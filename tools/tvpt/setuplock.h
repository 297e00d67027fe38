// SetupLock: held while printers and drivers are added or removed, by one process at a time.
//
// Each call of the spooler is whole in itself, but an installation takes several: another program's removal would take
// the driver away between them, or take one away that has just got its printer. Whoever comes second waits. The lock
// goes with its process, however that ends. It is the machine's where the spooler is, and the store's where a store was
// chosen. It does not hold other installers: what they do in between becomes an error of the call that meets it.
#pragma once

#include <memory>

// An implementation each for the platforms, chosen by the build.
class SetupLock
{
public:
    SetupLock(); // waits; throws Failure when there can be no lock
    ~SetupLock();
    SetupLock(const SetupLock&) = delete;
    SetupLock& operator=(const SetupLock&) = delete;

private:
    class Owner;
    std::unique_ptr<Owner> m_owner;
};
