#include "analysis/UsageSink.h"

namespace kestrow {

void UsageSink::regularFile(const FileStatus& status)
{
    if (status.linkCount > 1) {
        m_linked.try_emplace({status.device, status.inode}, status);
        return;
    }
    ++m_fileCount;
    m_allocatedBytes += status.allocatedSize;
    m_logicalBytes += status.size;
}

std::unique_ptr<WalkSink> UsageSink::split() const
{
    return std::make_unique<UsageSink>();
}

void UsageSink::join(WalkSink& part)
{
    auto& other = static_cast<UsageSink&>(part);
    m_fileCount += other.m_fileCount;
    m_allocatedBytes += other.m_allocatedBytes;
    m_logicalBytes += other.m_logicalBytes;
    m_linked.merge(other.m_linked);
}

std::int64_t UsageSink::fileCount() const
{
    return m_fileCount + static_cast<std::int64_t>(m_linked.size());
}

std::int64_t UsageSink::allocatedBytes() const
{
    std::int64_t total = m_allocatedBytes;
    for (const auto& [key, status] : m_linked)
        total += status.allocatedSize;
    return total;
}

std::int64_t UsageSink::logicalBytes() const
{
    std::int64_t total = m_logicalBytes;
    for (const auto& [key, status] : m_linked)
        total += status.size;
    return total;
}

} // namespace kestrow
