#pragma once

#include "apps/InstalledApp.h"
#include "models/RecordListModel.h"

namespace kestrow {

// The installed applications of the Uninstaller screen: name, detail (version and size),
// iconSource (a file URL or empty), canRemove, accessibleText.
class InstalledAppsModel : public RecordListModel<InstalledApp> {
public:
    explicit InstalledAppsModel(QObject* parent = nullptr);
};

} // namespace kestrow
