#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace kestrow {

// The one table from the symbol names the screens use to the icons shipped with the
// application (a freely licensed symbolic set), for QML as `Icons` and for the tray.
class IconTable : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Icons)
    QML_SINGLETON

public:
    using QObject::QObject;

    // The icon's file in the resources; a symbol the table lacks shows a plain document.
    Q_INVOKABLE [[nodiscard]] static QString source(const QString& symbol);
    [[nodiscard]] static QString resourcePath(const QString& symbol);
    [[nodiscard]] static bool knows(const QString& symbol);
};

} // namespace kestrow
