#include "platform/DefaultPowerSourceProvider.h"

namespace kestrow {

DefaultPowerSourceProvider::DefaultPowerSourceProvider(std::shared_ptr<const SystemSource> source)
    : m_source(std::move(source))
{
}

bool DefaultPowerSourceProvider::isACPowered() const
{
    const auto sources = m_source->powerSourceDescriptions();
    if (!sources)
        return true;
    for (const auto& description : *sources) {
        if (!description || !description->powerSourceState)
            continue;
        if (*description->powerSourceState == QLatin1String("AC Power"))
            return true;
        if (*description->powerSourceState == QLatin1String("Battery Power"))
            return false;
    }
    return true;
}

std::optional<double> DefaultPowerSourceProvider::batteryPercentage() const
{
    const auto sources = m_source->powerSourceDescriptions();
    if (!sources)
        return std::nullopt;
    for (const auto& description : *sources)
        if (description && description->currentCapacity)
            return static_cast<double>(*description->currentCapacity);
    return std::nullopt;
}

bool DefaultPowerSourceProvider::isLowPowerModeEnabled() const
{
    return m_source->isLowPowerModeEnabled();
}

} // namespace kestrow
