#pragma once

#include "apps/AppLeftover.h"
#include "models/RecordListModel.h"

namespace kestrow {

// The orphans of the Uninstaller screen: name, path (as shown), sizeText, accessibleText (of
// its trash button).
class LeftoversModel : public RecordListModel<AppLeftover> {
public:
    explicit LeftoversModel(QObject* parent = nullptr);
};

} // namespace kestrow
