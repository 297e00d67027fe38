#include "tests/delayload/samples.h"

NearCounter::NearCounter(int start) : m_value(start)
{
}

NearCounter::~NearCounter() = default;

int NearCounter::Next()
{
    return ++m_value;
}

int NearSum(int a, int b, int c, int d, int e)
{
    return a + 10 * b + 100 * c + 1000 * d + 10000 * e;
}
