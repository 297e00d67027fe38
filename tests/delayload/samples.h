// What the delay-loaded modules of these tests export.
#pragma once

#include "utilitiesstaticlib/wideliteral.h"

// delayload_near: a class with virtual functions, as the core library has them.
class DELAYLOAD_API NearCounter
{
public:
    explicit NearCounter(int start);
    NearCounter(const NearCounter&) = default;
    virtual ~NearCounter();
    virtual int Next();

private:
    int m_value;
};

DELAYLOAD_API int NearSum(int a, int b, int c, int d, int e);

// delayload_third
DELAYLOAD_API int ThirdAnswer();

// delayload_absent
DELAYLOAD_API int AbsentAnswer();
