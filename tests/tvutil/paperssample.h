// What the configuration module papers_sample answers, told by the variable TVPT_TEST_PAPERS: six numbers, for each of
// DC_PAPERS, DC_PAPERSIZE and DC_PAPERNAMES how many papers it announces, and how many it then says that it has
// brought.
#pragma once

#include "utilitiesstaticlib/wideliteral.h"

namespace paperssample
{

inline constexpr const WCHAR* kVariable = W("TVPT_TEST_PAPERS");

// Paper n, from 0 on, is number 300 + n, of n by 2n millimetres; its name is n times 'p', at most all of its room.
inline constexpr int kFirstNumber = 300;
inline constexpr std::size_t kNameLength = 64;

} // namespace paperssample
