#include "scan/targets/CargoCacheScanner.h"

#include "scan/targets/KnownFolder.h"

namespace kestrow {

void CargoCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    KnownFolder::emitEach(scan, context.home(QStringLiteral(".cargo")),
                          {
                              {QLatin1String("registry/cache"), QLatin1String("Cargo Crate Archive Cache (.crate)")},
                              {QLatin1String("registry/src"), QLatin1String("Cargo Unpacked Crate Source Cache")},
                              {QLatin1String("git/db"), QLatin1String("Cargo Bare Git Repositories")},
                              {QLatin1String("git/checkouts"), QLatin1String("Cargo Git Checkout Cache")},
                              {QLatin1String(".package-cache"), QLatin1String("Cargo Package Cache")},
                          },
                          QStringLiteral("dev.cargo.cache"), QLatin1String("/.cargo/bin"));
}

} // namespace kestrow
