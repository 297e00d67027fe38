#include "tests/delayload/samples.h"

int AbsentAnswer()
{
    return -1;
}
