#pragma once

#include "platform/FileManager.h"

#include <cstdint>
#include <map>
#include <utility>

namespace kestrow {

// Adds up the regular files of one walk: their count, allocated and logical bytes, a file with
// several names once. Splits, so that a walk may run on several threads.
class UsageSink final : public WalkSink {
public:
    void regularFile(const FileStatus& status) override;
    void unreadableDirectory(const QString&, int) override {}
    [[nodiscard]] std::unique_ptr<WalkSink> split() const override;
    void join(WalkSink& part) override;

    // Once the walk is over and the parts are joined.
    [[nodiscard]] std::int64_t fileCount() const;
    [[nodiscard]] std::int64_t allocatedBytes() const;
    [[nodiscard]] std::int64_t logicalBytes() const;

private:
    std::int64_t m_fileCount = 0;
    std::int64_t m_allocatedBytes = 0;
    std::int64_t m_logicalBytes = 0;
    // Only a file with several names can be met twice, so only those are kept aside, to be
    // counted once whichever thread met which name.
    std::map<std::pair<std::uint64_t, std::uint64_t>, FileStatus> m_linked;
};

} // namespace kestrow
