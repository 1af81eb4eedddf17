#include "system/StartupManager.h"

#include "platform/SystemMessage.h"
#include "system/AutostartEntries.h"
#include "system/LaunchdJobs.h"
#include "system/StartupError.h"
#include "system/SystemdUnits.h"

#include <algorithm>

namespace kestrow {

StartupManager::StartupManager(const StartupLocations& locations, std::shared_ptr<const FileManager> fileManager,
                               std::shared_ptr<const CommandRunner> runner)
{
    m_sources.push_back(std::make_unique<LaunchdJobs>(locations, fileManager, runner));
    m_sources.push_back(std::make_unique<AutostartEntries>(locations, fileManager));
    m_sources.push_back(std::make_unique<SystemdUnits>(locations, fileManager, runner));
}

std::vector<StartupItem> StartupManager::listItems() const
{
    std::vector<StartupItem> items;
    for (const auto& source : m_sources)
        for (StartupItem& item : source->listItems())
            items.push_back(std::move(item));
    std::stable_sort(items.begin(), items.end(), [](const StartupItem& a, const StartupItem& b) {
        return StartupImpact::Value(a.impact) > StartupImpact::Value(b.impact);
    });
    return items;
}

QString StartupManager::toggle(const StartupItem& item, bool enable) const
{
    for (const auto& source : m_sources)
        if (source->owns(item))
            return source->toggle(item, enable);
    throw StartupError::fileOperationFailed(item.fileURL.value_or(item.label), SystemMessage::of(ENOENT));
}

} // namespace kestrow
