#pragma once

#include "analysis/SpaceNode.h"
#include "platform/FileManager.h"
#include "safety/FileCategory.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

// Maps where the room of a folder goes: down to a depth every visible entry is a node, largest
// first; below it folders are measured, never listed, so memory follows the nodes, not the
// tree. Hidden entries are never nodes but count in the sizes of what is measured whole.
// Bundles are leaves, except as the root. Reads only; no state, so one engine serves any number
// of builds at once.
class SpaceLensEngine {
public:
    // Told, from any thread of the build, the path of each node made and each folder measured.
    using Progress = std::function<void(const QString& path)>;

    // `threads`: how many may build at once, the caller's included; 0 means one per processor.
    explicit SpaceLensEngine(std::shared_ptr<const FileManager> fileManager = {}, std::size_t threads = 0);

    // The tree of `path` (a link there is followed) to `maxDepth` levels below it. Throws
    // SpaceLensError when nothing is there, CancellationError when `stop` was requested.
    [[nodiscard]] SpaceNode scanDirectory(const QString& path, int maxDepth, std::stop_token stop = {},
                                          const Progress& progress = {}) const;
    // The same, taking `path` to lie `currentDepth` levels down already.
    [[nodiscard]] SpaceNode buildNode(const QString& path, int currentDepth, int maxDepth, std::stop_token stop = {},
                                      const Progress& progress = {}) const;

    // The leaves of `root` (files, bundles, folders measured whole) that pass every test given:
    // at least `minSize` allocated or logical bytes, not read or changed for `minAgeSeconds`,
    // of `category`. Largest first.
    [[nodiscard]] static std::vector<SpaceNode> filter(const SpaceNode& root,
                                                       std::optional<std::int64_t> minSize = std::nullopt,
                                                       std::optional<double> minAgeSeconds = std::nullopt,
                                                       std::optional<FileCategory> category = std::nullopt);

private:
    class Build;

    std::shared_ptr<const FileManager> m_fileManager;
    std::size_t m_threads;
};

} // namespace kestrow
