// What the delay-loaded modules of these tests export.
#pragma once

// delayload_near
DELAYLOAD_API int NearSum(int a, int b, int c, int d, int e);

// delayload_absent
DELAYLOAD_API int AbsentAnswer();
