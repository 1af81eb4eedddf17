#include "presentation/TuneUpModel.h"
#include "settings/AppSettings.h"
#include "state/AppState.h"
#include "views/AtlasView.h"
#include "views/CityView.h"
#include "views/FileReveal.h"
#include "views/MessageBoxConfirmation.h"
#include "views/PulseView.h"
#include "views/RendererProbe.h"
#include "views/ScreenshotTour.h"
#include "views/SettingsView.h"
#include "views/SweepView.h"
#include "views/TrayCompanion.h"
#include "views/TuneUpView.h"
#include "views/UninstallView.h"
#include "views/WindowCenterer.h"

#include <QApplication>
#include <QClipboard>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSurfaceFormat>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuick3D/qquick3d.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

Q_IMPORT_QML_PLUGIN(Kestrow_GuiPlugin)

using namespace kestrow;

namespace {

struct LaunchOptions {
    QString tab;
    QString home; // empty: the user's own
    QString screenshots;
    QString screenshotPrefix;
    bool quitAfterFirstFrame = false;
};

// Reads the command line of `application`; help and wrong options end the process here, as
// Qt's parser does.
LaunchOptions parseOptions(const QCoreApplication& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Kestrow: developer caches, measured and swept to the Trash."));
    parser.addHelpOption();
    const QCommandLineOption tabOption(QStringLiteral("tab"),
                                       QStringLiteral("The screen to open: Pulse, Sweep, Atlas, "
                                                      "Uninstall or Tune-Up."),
                                       QStringLiteral("name"));
    const QCommandLineOption homeOption(QStringLiteral("home"),
                                        QStringLiteral("Work on <folder> as the home, instead of your own."),
                                        QStringLiteral("folder"));
    const QCommandLineOption screenshotsOption(
        QStringLiteral("screenshots"),
        QStringLiteral("Save a picture of every screen into <folder> once the launch's work is done, then quit."),
        QStringLiteral("folder"));
    const QCommandLineOption prefixOption(QStringLiteral("screenshot-prefix"),
                                          QStringLiteral("How the pictures' file names begin."), QStringLiteral("text"),
                                          QStringLiteral("kestrow"));
    const QCommandLineOption firstFrameOption(
        QStringLiteral("quit-after-first-frame"),
        QStringLiteral("Say \"first frame\" on standard error once the window has drawn, then quit: for timing "
                       "the start."));
    parser.addOptions({tabOption, homeOption, screenshotsOption, prefixOption, firstFrameOption});
    parser.process(application);

    LaunchOptions options{.tab = parser.value(tabOption),
                          .screenshots = parser.value(screenshotsOption),
                          .screenshotPrefix = parser.value(prefixOption),
                          .quitAfterFirstFrame = parser.isSet(firstFrameOption)};
    if (parser.isSet(homeOption)) {
        options.home = QDir(parser.value(homeOption)).absolutePath();
        if (!QFileInfo(options.home).isDir()) {
            std::fprintf(stderr, "kestrow-app: %s is not a folder: give an existing folder to --home.\n",
                         qPrintable(QDir::toNativeSeparators(parser.value(homeOption))));
            std::exit(2);
        }
    }
    return options;
}

// Help is given without a display, before the windowing system is asked for one.
bool asksForHelp(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        for (const char* flag : {"-h", "--help", "-?", "--help-all"})
            if (std::strcmp(argv[i], flag) == 0)
                return true;
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    if (asksForHelp(argc, argv)) {
        const QCoreApplication application(argc, argv);
        parseOptions(application);
    }
    // Widgets for the tray and the Sweep's question; the window itself is Qt Quick.
    QApplication application(argc, argv);
    QSurfaceFormat::setDefaultFormat(QQuick3D::idealSurfaceFormat());
    QApplication::setApplicationName(QStringLiteral("Kestrow"));
    QApplication::setQuitOnLastWindowClosed(true);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    const LaunchOptions options = parseOptions(application);

    AppState state(true,
                   AppEnvironment{.homeURL = options.home, .confirmation = std::make_shared<MessageBoxConfirmation>()});
    TuneUpModel tuneUp(state);
    PulseView pulse(state);
    SweepView sweep(state);
    AtlasView atlas(state);
    UninstallView uninstall(state);
    TuneUpView tuneUpView(state, tuneUp);
    CityView city(state);
    WindowCenterer centerer;
    TrayCompanion tray(state);
    SettingsView settingsView(
        state, [](const QString& text) { QGuiApplication::clipboard()->setText(text); }, &FileReveal::show,
        TrayCompanion::trayAvailable());

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
        {QStringLiteral("cityView"), QVariant::fromValue<QObject*>(&city)},
        {QStringLiteral("centerer"), QVariant::fromValue<QObject*>(&centerer)},
        {QStringLiteral("tray"), QVariant::fromValue<QObject*>(&tray)},
        {QStringLiteral("settingsView"), QVariant::fromValue<QObject*>(&settingsView)},
    });
    engine.load(QUrl(QStringLiteral("qrc:/Kestrow/Gui/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
    centerer.registerMainWindow(window);
    RendererProbe renderer(*window);
    QObject::connect(&renderer, &RendererProbe::softwareRendererFound, &city,
                     [&city] { city.setSoftwareRendering(true); });
    QObject::connect(&tray, &TrayCompanion::centerRequested, &centerer, [&centerer] { centerer.centerActiveWindow(); });
    QObject::connect(&tray, &TrayCompanion::raiseRequested, window, [window] {
        window->show();
        window->raise();
        window->requestActivate();
    });
    if (!options.tab.isEmpty())
        state.setSelectedTabRaw(options.tab);
    if (options.quitAfterFirstFrame)
        QObject::connect(
            window, &QQuickWindow::frameSwapped, &application,
            [] {
                std::fputs("first frame\n", stderr);
                QCoreApplication::quit();
            },
            Qt::SingleShotConnection);
    std::unique_ptr<ScreenshotTour> tour;
    if (!options.screenshots.isEmpty()) {
        tour = std::make_unique<ScreenshotTour>(*window, state, settingsView, city, options.screenshots,
                                                options.screenshotPrefix, &tray.menu());
        tour->start();
    }
    return QApplication::exec();
}
