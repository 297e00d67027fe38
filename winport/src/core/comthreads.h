// Which threads have COM.
#pragma once

namespace winport
{

// This thread called CoInitializeEx, or some thread of the process is multithreaded: Windows counts a thread without
// an apartment to the multithreaded one as soon as that exists.
bool ThreadHasCom() noexcept;

} // namespace winport
