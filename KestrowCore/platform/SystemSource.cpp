#include "platform/SystemSource.h"

#ifdef __APPLE__
#include "platform/MacSystemSource.h"
#else
#include "platform/LinuxSystemSource.h"
#endif

namespace kestrow {

std::shared_ptr<const SystemSource> SystemSource::current()
{
#ifdef __APPLE__
    return std::make_shared<MacSystemSource>();
#else
    return std::make_shared<LinuxSystemSource>();
#endif
}

} // namespace kestrow
