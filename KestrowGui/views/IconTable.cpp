#include "views/IconTable.h"

#include <QHash>

namespace kestrow {

namespace {

using namespace Qt::StringLiterals;

const QHash<QString, QString>& table()
{
    static const QHash<QString, QString> icons{
        {u"waveform.path.ecg"_s, u"computer"_s},
        {u"paintbrush.pointed"_s, u"edit-clear-all"_s},
        {u"paintbrush.pointed.fill"_s, u"edit-clear-all"_s},
        {u"map"_s, u"find-location"_s},
        {u"shippingbox"_s, u"package-x-generic"_s},
        {u"shippingbox.fill"_s, u"package-x-generic"_s},
        {u"slider.horizontal.3"_s, u"preferences-system"_s},
        {u"magnifyingglass"_s, u"edit-find"_s},
        {u"cpu"_s, u"applications-engineering"_s},
        {u"externaldrive.badge.xmark"_s, u"drive-harddisk"_s},
        {u"hammer.fill"_s, u"emblem-system"_s},
        {u"folder.badge.gearshape"_s, u"folder-open"_s},
        {u"archivebox"_s, u"media-removable"_s},
        {u"doc"_s, u"text-x-generic"_s},
        {u"doc.fill"_s, u"text-x-generic"_s},
        {u"folder"_s, u"folder"_s},
        {u"folder.fill"_s, u"folder"_s},
        {u"folder.badge.minus"_s, u"folder"_s},
        {u"chevron.up"_s, u"go-up"_s},
        {u"trash"_s, u"user-trash"_s},
        {u"app.dashed"_s, u"application-x-executable"_s},
        {u"ghost"_s, u"avatar-default"_s},
        {u"network"_s, u"network-wired"_s},
        {u"internaldrive"_s, u"drive-harddisk"_s},
        {u"arrow.clockwise"_s, u"view-refresh"_s},
        {u"gearshape"_s, u"emblem-system"_s},
        {u"sun.max.fill"_s, u"weather-clear"_s},
        {u"moon.fill"_s, u"weather-clear-night"_s},
        {u"laptopcomputer"_s, u"computer"_s},
        {u"bolt.fill"_s, u"battery-full-charging"_s},
        {u"battery.100.bolt"_s, u"battery-full-charging"_s},
        {u"battery.100"_s, u"battery-full"_s},
        {u"checkmark.shield.fill"_s, u"security-high"_s},
        {u"lock.shield"_s, u"changes-prevent"_s},
        {u"checkmark.seal"_s, u"emblem-ok"_s},
        {u"checkmark"_s, u"object-select"_s},
        {u"plus"_s, u"list-add"_s},
        {u"xmark.circle.fill"_s, u"window-close"_s},
        {u"doc.on.doc"_s, u"edit-copy"_s},
        {u"exclamationmark.triangle"_s, u"dialog-warning"_s},
        {u"building.2.crop.circle"_s, u"view-app-grid"_s},
        {u"circle.righthalf.filled"_s, u"preferences-system-details"_s},
        {u"app.badge.fill"_s, u"application-x-executable"_s},
        {u"archivebox.fill"_s, u"media-removable"_s},
        {u"brain.head.profile"_s, u"applications-science"_s},
        {u"checkmark.seal.fill"_s, u"emblem-ok"_s},
        {u"chevron.left.forwardslash.chevron.right"_s, u"utilities-terminal"_s},
        {u"doc.text.fill"_s, u"text-x-generic"_s},
        {u"doc.text.magnifyingglass"_s, u"edit-find-replace"_s},
        {u"envelope.arrow.triangle.branch.fill"_s, u"mail-unread"_s},
        {u"exclamationmark.bubble.fill"_s, u"dialog-information"_s},
        {u"exclamationmark.triangle.fill"_s, u"dialog-error"_s},
        {u"gearshape.arrow.triangle.2.circlepath"_s, u"emblem-synchronizing"_s},
        {u"trash.fill"_s, u"user-trash"_s},
        {u"wand.and.stars"_s, u"system-software-install"_s},
        {u"ferry"_s, u"package-x-generic"_s},
        {u"globe"_s, u"web-browser"_s},
        {u"rays"_s, u"dialog-warning"_s},
    };
    return icons;
}

} // namespace

QString IconTable::resourcePath(const QString& symbol)
{
    return u":/Kestrow/Gui/icons/"_s + table().value(symbol, u"text-x-generic"_s) + u"-symbolic.svg"_s;
}

QString IconTable::source(const QString& symbol)
{
    return u"qrc"_s + resourcePath(symbol);
}

bool IconTable::knows(const QString& symbol)
{
    return table().contains(symbol);
}

} // namespace kestrow
