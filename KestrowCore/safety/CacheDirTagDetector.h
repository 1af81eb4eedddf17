#pragma once

#include "platform/FileManager.h"
#include "safety/CacheDirTagInfo.h"

#include <QString>

#include <optional>

namespace kestrow {

// Reads and writes the cache directory tag, the marker file "CACHEDIR.TAG" by which a
// folder declares itself a regenerable cache (https://bford.info/cachedir/). Stateless.
class CacheDirTagDetector {
public:
    static constexpr QLatin1String standardSignature{"8a477f597d28d172789f06886806bc55"};
    static constexpr QLatin1String signatureHeader{"Signature: 8a477f597d28d172789f06886806bc55"};
    static constexpr QLatin1String tagFileName{"CACHEDIR.TAG"};

    // Nothing when no tag exists in `directory` or it cannot be opened; otherwise a result
    // that says whether the tag is valid, with its comment. Reads at most 512 bytes, and only
    // from a regular file: a tag that is a symbolic link, a FIFO or a device counts as none.
    [[nodiscard]] static std::optional<CacheDirTagInfo> detectTag(const QString& directory);
    // The same, reading through `fileManager`.
    [[nodiscard]] static std::optional<CacheDirTagInfo> detectTag(const QString& directory,
                                                                  const FileManager& fileManager);
    // True only for a valid tag.
    [[nodiscard]] static bool isCacheDirectory(const QString& directory);
    // Writes the tag into `directory` atomically, with a comment naming the application when
    // one is given. Throws CacheDirTagWriteError; nothing is written then, also when the tag's
    // name holds a symbolic link.
    static void writeTag(const QString& directory, const std::optional<QString>& applicationName = std::nullopt);
};

} // namespace kestrow
