// What the configuration module papers_sample answers, told by the variable TVPT_TEST_PAPERS: for each of DC_PAPERS,
// DC_PAPERSIZE and DC_PAPERNAMES how many papers it announces, and how many it then says that it has brought. Each is a
// character, kNoPaper for 0; those below it are refusals.
#pragma once

#include "utilitiesstaticlib/wideliteral.h"

namespace paperssample
{

inline constexpr const WCHAR* kVariable = W("TVPT_TEST_PAPERS");
inline constexpr int kNoPaper = 0x100;
inline constexpr WCHAR kTooMany = W('!'); // more than there are paper numbers

// Paper n, from 0 on, is number 300 + n, of n by 2n millimetres; its name is n times 'p', at most all of its room.
inline constexpr int kFirstNumber = 300;
inline constexpr std::size_t kNameLength = 64;

} // namespace paperssample
