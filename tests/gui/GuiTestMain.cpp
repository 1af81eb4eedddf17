#include <QQmlEngine>
#include <QSurfaceFormat>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuick3D/qquick3d.h>
#include <QtQuickTest>

Q_IMPORT_QML_PLUGIN(Kestrow_GuiPlugin)

// The screens come from the application's own QML module, linked in.
class GuiTestSetup : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable() { QSurfaceFormat::setDefaultFormat(QQuick3D::idealSurfaceFormat()); }
    void qmlEngineAvailable(QQmlEngine* engine) { engine->addImportPath(QStringLiteral("qrc:/")); }
};

QUICK_TEST_MAIN_WITH_SETUP(kestrow_gui, GuiTestSetup)

#include "GuiTestMain.moc"
