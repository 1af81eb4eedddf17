#pragma once

#include "models/RecordListModel.h"
#include "presentation/SweepGroup.h"

namespace kestrow {

// The "Ready to sweep" rows of the Pulse screen: name, hint, pillText, pillColor, sizeText.
class SweepGroupsModel : public RecordListModel<SweepGroup> {
public:
    explicit SweepGroupsModel(QObject* parent = nullptr);
};

} // namespace kestrow
