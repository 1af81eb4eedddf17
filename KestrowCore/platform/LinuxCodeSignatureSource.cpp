#include "platform/CodeSignatureSource.h"

namespace kestrow {

std::optional<SigningInformation> CodeSignatureSource::read(const QString&)
{
    return std::nullopt;
}

} // namespace kestrow
