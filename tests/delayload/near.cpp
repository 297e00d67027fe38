#include "tests/delayload/samples.h"

int NearSum(int a, int b, int c, int d, int e)
{
    return a + 10 * b + 100 * c + 1000 * d + 10000 * e;
}
