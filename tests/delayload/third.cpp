#include "tests/delayload/samples.h"

int ThirdAnswer()
{
    return 3;
}
