#pragma once

#include "analysis/SpaceNode.h"

#include <vector>

namespace kestrow::cli {

// The tree as people read it (at most `top` rows per folder, largest first), or as JSON.
void reportLens(const SpaceNode& root, int top, bool json);
// The flat list of leaves, as given (largest first), or as JSON.
void reportLensFiles(const std::vector<SpaceNode>& nodes, bool json);

} // namespace kestrow::cli
