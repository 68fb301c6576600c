#include "scripts/fontladder.h"

namespace scripts {

double menuDecrease(double size, bool paneShown)
{
    return (paneShown && size >= 10) ? size - 2 : size;
}

double menuIncrease(double size)
{
    return size <= 22 ? size + 2 : size;
}

double keyDecrease(double size, bool paneShown)
{
    if (!paneShown || size < 9)
        return size;
    return (size == 9 || size == 10) ? size - 1 : size - 2;
}

double keyIncrease(double size, bool paneShown)
{
    if (!paneShown || size > 24)
        return size;
    return (size == 8 || size == 9) ? size + 1 : size + 2;
}

} // namespace scripts
