#include "models/AtlasRowsModel.h"

#include "presentation/AtlasScreen.h"
#include "presentation/Theme.h"

namespace kestrow {

AtlasRowsModel::AtlasRowsModel(QObject* parent)
    : RecordListModel(
          {{"name", [](const SpaceNode& child) { return QVariant(child.name); }},
           {"isDirectory", [](const SpaceNode& child) { return QVariant(child.isDirectory); }},
           {"symbol",
            [](const SpaceNode& child) {
                return QVariant(child.isDirectory ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill"));
            }},
           {"sizeText", [](const SpaceNode& child) { return QVariant(Theme::byteText(child.allocatedSizeBytes)); }},
           {"fraction", [this](const SpaceNode& child) { return QVariant(AtlasScreen::fraction(child, m_rootSize)); }},
           {"accessibleText",
            [this](const SpaceNode& child) { return QVariant(AtlasScreen::rowAccessibilityText(child, m_rootSize)); }}},
          parent)
{
}

void AtlasRowsModel::setFolder(const std::optional<SpaceNode>& folder)
{
    m_rootSize = folder ? folder->allocatedSizeBytes : 0;
    setRecords(folder && folder->children ? *folder->children : std::vector<SpaceNode>{});
}

} // namespace kestrow
