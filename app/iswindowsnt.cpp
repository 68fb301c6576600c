#include "app/iswindowsnt.h"

#include "platform/os/system.h"

bool IsWindowsNT()
{
    os::OsVersionInfo info;
    info.dwOSVersionInfoSize = 148;
    return os::GetVersionEx(info) && info.dwPlatformId == 2;
}
