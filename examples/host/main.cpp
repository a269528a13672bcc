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
    QString tourDirectory; ///< Empty for no tour.
};

/// Ends the program by itself on --help, and with 1 on most mistakes; returns false on others.
bool readOptions(const QCoreApplication &app, Options &options)
{
    const QCommandLineOption plugin(
        QStringLiteral("plugin"),
        QStringLiteral("Load the plug-in from <file>, not from beside this program."),
        QStringLiteral("file"),
        QCoreApplication::applicationDirPath() + QLatin1String("/" PLUGIN_FILE_NAME));
    const QCommandLineOption tour(
        QStringLiteral("tour"),
        QStringLiteral("Show everything without an operator, and write pictures of it to "
                       "<directory>."),
        QStringLiteral("directory"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Control software of a machine, with the settings plug-in."));
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
    // From the event loop: it may open message boxes, which only a running loop can leave.
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
        // An application without windows: help and mistakes need no display.
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
    plugin.reset(); // It may rely on the machine and on the application until it is unloaded.
    return exitCode;
}
