#pragma once

#include "analysis/SpaceNode.h"
#include "models/RecordListModel.h"

#include <cstdint>

namespace kestrow {

// The children of the folder on the Atlas screen, in the engine's order: name, isDirectory,
// symbol, sizeText, fraction (of the folder), accessibleText.
class AtlasRowsModel : public RecordListModel<SpaceNode> {
public:
    explicit AtlasRowsModel(QObject* parent = nullptr);

    // Empty for none or a folder without children.
    void setFolder(const std::optional<SpaceNode>& folder);

private:
    std::int64_t m_rootSize = 0;
};

} // namespace kestrow
