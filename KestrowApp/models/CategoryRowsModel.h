#pragma once

#include "models/RecordListModel.h"
#include "storage/CategorySummary.h"

namespace kestrow {

// The category rows of the Sweep screen: name, symbol, countText, pillText, pillColor, sizeText,
// accessibleText.
class CategoryRowsModel : public RecordListModel<CategorySummary> {
public:
    explicit CategoryRowsModel(QObject* parent = nullptr);
};

} // namespace kestrow
