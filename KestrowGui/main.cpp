#include "presentation/TuneUpModel.h"
#include "settings/AppSettings.h"
#include "state/AppState.h"
#include "views/AtlasView.h"
#include "views/MessageBoxConfirmation.h"
#include "views/PulseView.h"
#include "views/ScreenshotTour.h"
#include "views/SweepView.h"
#include "views/TrayCompanion.h"
#include "views/TuneUpView.h"
#include "views/UninstallView.h"
#include "views/WindowCenterer.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>

#include <memory>

Q_IMPORT_QML_PLUGIN(Kestrow_GuiPlugin)

using namespace kestrow;

int main(int argc, char** argv)
{
    // Widgets for the tray and the Sweep's question; the window itself is Qt Quick.
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kestrow"));
    QApplication::setQuitOnLastWindowClosed(true);
    QQuickStyle::setStyle(QStringLiteral("Basic"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Kestrow: developer caches, measured and swept to the Trash."));
    parser.addHelpOption();
    const QCommandLineOption tabOption(QStringLiteral("tab"),
                                       QStringLiteral("The screen to open: Pulse, Sweep, Atlas, "
                                                      "Uninstall or Tune-Up."),
                                       QStringLiteral("name"));
    const QCommandLineOption screenshotsOption(
        QStringLiteral("screenshots"),
        QStringLiteral("Save a picture of every screen into <folder> once the launch's work is done, then quit."),
        QStringLiteral("folder"));
    const QCommandLineOption prefixOption(QStringLiteral("screenshot-prefix"),
                                          QStringLiteral("How the pictures' file names begin."), QStringLiteral("text"),
                                          QStringLiteral("kestrow"));
    parser.addOptions({tabOption, screenshotsOption, prefixOption});
    parser.process(application);

    AppState state(true, AppEnvironment{.confirmation = std::make_shared<MessageBoxConfirmation>()});
    TuneUpModel tuneUp(state);
    PulseView pulse(state);
    SweepView sweep(state);
    AtlasView atlas(state);
    UninstallView uninstall(state);
    TuneUpView tuneUpView(state, tuneUp);
    WindowCenterer centerer;
    TrayCompanion tray(pulse, state.settings());

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.setInitialProperties({
        {QStringLiteral("appState"), QVariant::fromValue<QObject*>(&state)},
        {QStringLiteral("settings"), QVariant::fromValue<QObject*>(&state.settings())},
        {QStringLiteral("pulseView"), QVariant::fromValue<QObject*>(&pulse)},
        {QStringLiteral("sweepView"), QVariant::fromValue<QObject*>(&sweep)},
        {QStringLiteral("atlasView"), QVariant::fromValue<QObject*>(&atlas)},
        {QStringLiteral("uninstallView"), QVariant::fromValue<QObject*>(&uninstall)},
        {QStringLiteral("tuneUpView"), QVariant::fromValue<QObject*>(&tuneUpView)},
        {QStringLiteral("centerer"), QVariant::fromValue<QObject*>(&centerer)},
        {QStringLiteral("tray"), QVariant::fromValue<QObject*>(&tray)},
    });
    engine.load(QUrl(QStringLiteral("qrc:/Kestrow/Gui/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
    centerer.registerMainWindow(window);
    QObject::connect(&tray, &TrayCompanion::raiseRequested, window, [window] {
        window->show();
        window->raise();
        window->requestActivate();
    });
    if (parser.isSet(tabOption))
        state.setSelectedTabRaw(parser.value(tabOption));
    std::unique_ptr<ScreenshotTour> tour;
    if (parser.isSet(screenshotsOption)) {
        tour = std::make_unique<ScreenshotTour>(*window, state, parser.value(screenshotsOption),
                                                parser.value(prefixOption), &tray.menu());
        tour->start();
    }
    return QApplication::exec();
}
