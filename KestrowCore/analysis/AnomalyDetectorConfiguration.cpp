#include "analysis/AnomalyDetectorConfiguration.h"

#include "platform/PathText.h"

namespace kestrow {

AnomalyDetectorConfiguration::AnomalyDetectorConfiguration(std::int64_t minSize, std::optional<QStringList> roots,
                                                           int depth, QString home)
    : minSizeBytes(minSize)
    , inspectionRoots(roots ? std::move(*roots) : defaultInspectionRoots(home))
    , maxSearchDepth(depth)
    , homeURL(std::move(home))
{
}

QStringList AnomalyDetectorConfiguration::defaultInspectionRoots(const QString& homeURL)
{
    QStringList roots;
    for (const char* relative : {".cache", "Library/Caches", "Library/Application Support", "Developer", "Projects"})
        roots.append(PathText::appending(homeURL, QString::fromLatin1(relative)));
    return roots;
}

} // namespace kestrow
