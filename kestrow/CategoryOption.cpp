#include "CategoryOption.h"

#include "CommandLine.h"

#include <QStringList>

namespace kestrow::cli {

StorageCategory parseCategoryOption(const std::string& given)
{
    if (const auto category = StorageCategory::parse(QString::fromStdString(given)))
        return *category;
    QStringList names;
    for (const StorageCategory category : StorageCategory::allCases())
        names.append(category.rawValue());
    throw UsageError("--category " + given + ": unknown category. Accepted names (any case, underscores optional): " +
                     names.join(QStringLiteral(", ")).toStdString());
}

} // namespace kestrow::cli
