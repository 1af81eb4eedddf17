#pragma once

#include "models/RecordListModel.h"
#include "system/StartupItem.h"

#include <functional>

namespace kestrow {

// The launch items of the Tune-Up screen: name, path, typeText, impactText, switchOn,
// accessibleText. Where a switch stands is the screen's to say, since a change under way shows
// its new position before the list is read again.
class StartupItemsModel : public RecordListModel<StartupItem> {
public:
    using SwitchPosition = std::function<bool(const StartupItem&)>;

    explicit StartupItemsModel(SwitchPosition position, QObject* parent = nullptr);
    // The positions changed, the items did not.
    void switchesChanged();
};

} // namespace kestrow
