#include "system/MaintenanceTasks.h"

#include <QStringDecoder>

#include <optional>
#include <vector>

namespace kestrow {

namespace {

const QString resolvectl = QStringLiteral("/usr/bin/resolvectl");

std::optional<QString> decodedUtf8(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

QString searchIndexUnavailable()
{
    return QStringLiteral("Search indexing is not available on this system.");
}

} // namespace

MaintenanceTasks::MaintenanceTasks(HostSystem system, std::shared_ptr<const CommandRunner> runner,
                                   std::shared_ptr<const FileManager> fileManager)
    : m_system(system)
    , m_runner(std::move(runner))
    , m_fileManager(std::move(fileManager))
{
}

QString MaintenanceTasks::flushDNSCache() const
{
    std::vector<ChildCommand> steps;
    if (m_system == HostSystem::macOS)
        steps = {{QStringLiteral("/usr/bin/dscacheutil"), {QStringLiteral("-flushcache")}},
                 {QStringLiteral("/usr/bin/killall"), {QStringLiteral("-HUP"), QStringLiteral("mDNSResponder")}}};
    else if (m_fileManager->fileExists(resolvectl)) // systemd-resolved holds the cache
        steps = {{resolvectl, {QStringLiteral("flush-caches")}}};
    if (steps.empty())
        return QStringLiteral("DNS cache flushing is not available on this system.");
    for (const ChildCommand& step : steps)
        static_cast<void>(m_runner->run(step));
    return QStringLiteral("DNS cache successfully flushed.");
}

QString MaintenanceTasks::freePurgeableSpace(std::int64_t targetGigabytes) const
{
    if (m_system != HostSystem::macOS)
        return QStringLiteral("Purgeable space release is not available on this system.");
    const QString targetBytes = QString::number(targetGigabytes * 1000000000);
    const QByteArray output =
        m_runner->run({QStringLiteral("/usr/bin/tmutil"),
                       {QStringLiteral("thinlocalsnapshots"), QStringLiteral("/"), targetBytes, QStringLiteral("4")}});
    return decodedUtf8(output).value_or(QStringLiteral("Purgeable release executed."));
}

QString MaintenanceTasks::triggerSpotlightReindex(const QString& volumePath) const
{
    if (m_system != HostSystem::macOS)
        return searchIndexUnavailable();
    const QByteArray output = m_runner->run({QStringLiteral("/usr/bin/mdutil"), {QStringLiteral("-E"), volumePath}});
    return decodedUtf8(output).value_or(QStringLiteral("Spotlight reindexing initiated."));
}

QString MaintenanceTasks::getSpotlightStatus(const QString& volumePath) const
{
    if (m_system != HostSystem::macOS)
        return searchIndexUnavailable();
    const QByteArray output = m_runner->run({QStringLiteral("/usr/bin/mdutil"), {QStringLiteral("-s"), volumePath}});
    const auto text = decodedUtf8(output);
    return text ? text->trimmed() : QStringLiteral("Unknown");
}

} // namespace kestrow
