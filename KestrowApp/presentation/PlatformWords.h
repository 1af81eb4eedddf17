#pragma once

#include <QString>

namespace kestrow {

// The texts that name the platform's own programs and places. On macOS they are the Mac's;
// elsewhere they name the desktop's counterparts, so that no one reads about a Mac on a PC.
// One source file per platform fills them; the build picks it.
struct PlatformWords {
    QString putBack;       // how the Trash gives an item back, and where
    QString putBackAction; // the same, the command alone
    QString revealInFileManager;
    QString scanComputer; // the main button when it would scan
    QString themeDetail;
    QString thermalGovernorDetail;
    QString reducedMotionDetail;
    QString menuBarLabel;
    QString menuBarDetail;
    QString trashFirstDetail;
    QString permanentPurgeNote;
    QString fullDiskAccessBanner; // the Pulse screen's note while access is not granted
    QString fullDiskAccessTitle;
    QString fullDiskAccessGrantedDetail;
    QString fullDiskAccessOptionalDetail;
    QString grantAccessHelp;
    QString anomalySensitivityDetail;
    QString noStartupItemsDetail;
    QString inherentProtections;

    [[nodiscard]] static const PlatformWords& current();
    // The mark over the capacity figures: the root volume's file system, live.
    [[nodiscard]] static QString liveVolumeMark();
};

} // namespace kestrow
