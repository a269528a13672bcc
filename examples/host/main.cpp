#include "examples/host/LanguageFile.h"
#include "examples/host/Machine.h"
#include "examples/host/MainWindow.h"
#include "examples/host/Plugin.h"
#include "examples/host/Tour.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>
#include <QTimer>

#include <memory>

namespace {

struct Options
{
    QString pluginFile;
    QString tourDirectory; ///< Empty without a tour.
};

/// Returns false if there is an unexpected argument. QCommandLineParser ends the program on --help
/// and, with exit code 1, on all other mistakes.
bool readOptions(const QCoreApplication &app, Options &options)
{
    const QCommandLineOption plugin(
        QStringLiteral("plugin"),
        QStringLiteral("Load the plug-in from <file> instead of this program's folder."),
        QStringLiteral("file"),
        QCoreApplication::applicationDirPath() + QLatin1String("/" PLUGIN_FILE_NAME));
    const QCommandLineOption tour(
        QStringLiteral("tour"),
        QStringLiteral("Run a scripted tour and save its screenshots in <folder>."),
        QStringLiteral("folder"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("The example host: control software that uses the settings plug-in."));
    parser.addHelpOption();
    parser.addOptions({plugin, tour});
    parser.process(app);
    if (!parser.positionalArguments().isEmpty()) {
        QTextStream(stderr) << "zendel-host: Unexpected argument '"
                            << parser.positionalArguments().first() << "'.\n";
        return false;
    }
    options = {parser.value(plugin), parser.value(tour)};
    return true;
}

QString cataloguePath()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/Lang/Lang.ini");
}

int run(Machine &machine, IZendelMgr &manager, const QString &tourDirectory)
{
    MainWindow window(machine, manager);
    window.show();
    // From the event loop, because Init() may show a message box, and quitting has no effect before
    // the loop runs.
    QTimer::singleShot(0, &window, &MainWindow::initPlugin);

    LanguageFile languages(cataloguePath());
    Tour tour(window, languages, tourDirectory);
    if (!tourDirectory.isEmpty())
        tour.start();
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    Options options;
    std::unique_ptr<Plugin> plugin;
    {
        // Without windows, so that --help and error messages work without a display.
        const QCoreApplication app(argc, argv);
        if (!readOptions(app, options))
            return 1;
        plugin = std::make_unique<Plugin>(options.pluginFile);
        if (!plugin->load()) {
            QTextStream(stderr) << "zendel-host: " << plugin->errorString() << '\n';
            return 1;
        }
    }

    const QApplication app(argc, argv);
    Machine machine(cataloguePath());
    const int exitCode = run(machine, plugin->manager(), options.tourDirectory);
    plugin.reset(); // The plug-in may use the machine and the application until it is unloaded.
    return exitCode;
}
