#include "scan/targets/GradleCacheScanner.h"

#include "scan/targets/KnownFolder.h"

namespace kestrow {

void GradleCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const QString root = context.home(QStringLiteral(".gradle"));
    if (!context.fileManager->fileExists(root))
        return;
    KnownFolder::emitEach(scan, root,
                          {
                              {QLatin1String("caches"), QLatin1String("Gradle Dependency & Transform Cache")},
                              {QLatin1String("wrapper/dists"), QLatin1String("Gradle Wrapper Distributions")},
                              {QLatin1String("daemon"), QLatin1String("Gradle Daemon Execution Logs & State")},
                          },
                          QStringLiteral("dev.gradle.cache"), QLatin1String("gradle.properties"));
}

} // namespace kestrow
