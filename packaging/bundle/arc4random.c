/* What newer C libraries have and those from 2.34 on lack, for the bundled C++ runtime. */

#include <stdint.h>
#include <stdlib.h>
#include <sys/random.h>

uint32_t arc4random(void)
{
    uint32_t number;
    if (getrandom(&number, sizeof number, 0) != (ssize_t)sizeof number)
        abort();
    return number;
}
