#include "AppLookup.h"

#include "CommandLine.h"

#include "platform/NativePath.h"

#include <functional>

namespace kestrow::cli {

AppLookup::AppLookup(std::vector<InstalledApp> apps)
    : m_apps(std::move(apps))
{
}

const InstalledApp& AppLookup::find(const QString& nameOrId) const
{
    const std::function<bool(const InstalledApp&)> tests[] = {
        [&](const InstalledApp& app) { return app.bundleIdentifier == nameOrId; },
        [&](const InstalledApp& app) { return app.bundleIdentifier.compare(nameOrId, Qt::CaseInsensitive) == 0; },
        [&](const InstalledApp& app) { return app.displayName.compare(nameOrId, Qt::CaseInsensitive) == 0; },
    };
    for (const auto& matches : tests) {
        std::vector<const InstalledApp*> found;
        for (const InstalledApp& app : m_apps)
            if (matches(app))
                found.push_back(&app);
        if (found.size() == 1)
            return *found.front();
        if (found.size() > 1) {
            QString list;
            for (const InstalledApp* app : found)
                list +=
                    QStringLiteral("\n  %1 (%2) at %3").arg(app->displayName, app->bundleIdentifier, app->bundlePath);
            throw UsageError(NativePath::encode(QStringLiteral("'%1' names %2 applications; give the identifier or "
                                                               "the path's folder with --applications to pick one:%3")
                                                    .arg(nameOrId)
                                                    .arg(found.size())
                                                    .arg(list))
                                 .toStdString());
        }
    }
    throw UsageError(NativePath::encode(QStringLiteral("no installed application is named or identified '%1'; "
                                                       "`kestrow apps list` shows them (--all for the system's).")
                                            .arg(nameOrId))
                         .toStdString());
}

} // namespace kestrow::cli
