#include "platform/HostSystem.h"

namespace kestrow {

HostSystem currentHostSystem()
{
#ifdef __APPLE__
    return HostSystem::macOS;
#else
    return HostSystem::gnuLinux;
#endif
}

} // namespace kestrow
