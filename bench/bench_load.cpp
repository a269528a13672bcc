// Measures loading the plug-in, until NewInterface() has returned, and the Qt libraries that it
// needs if the host has not loaded them.

#include "bench/CpuTimer.h"

#include <benchmark/benchmark.h>

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace {

using Files = std::vector<const char *>;

/// Loads the files @p before. Then returns the seconds until @p file is loaded and its
/// NewInterface(), if there is one, has returned; -1 if anything fails.
double loadTime(const Files &before, const char *file)
{
    for (const char *library : before) {
        if (!dlopen(library, RTLD_LAZY | RTLD_GLOBAL))
            return -1;
    }

    const CpuTimer timer;
    void *const module = dlopen(file, RTLD_LAZY | RTLD_LOCAL);
    if (!module)
        return -1;
    if (void *const function = dlsym(module, "NewInterface"))
        benchmark::DoNotOptimize(reinterpret_cast<void *(*)()>(function)());
    return timer.seconds();
}

/// Calls loadTime() in a new process, because Qt's libraries can't be unloaded.
double loadTimeInChild(const Files &before, const char *file)
{
    int ends[2];
    if (pipe(ends) != 0)
        return -1;

    const pid_t child = fork();
    if (child == 0) {
        const double seconds = loadTime(before, file);
        _exit(write(ends[1], &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
    }
    close(ends[1]);
    double seconds = -1;
    if (child < 0 || read(ends[0], &seconds, sizeof seconds) != sizeof seconds)
        seconds = -1;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return seconds;
}

void load(benchmark::State &state, const Files &before, const char *file)
{
    for ([[maybe_unused]] auto _ : state) {
        const double seconds = loadTimeInChild(before, file);
        if (seconds < 0) {
            state.SkipWithError("a file can't be loaded");
            break;
        }
        state.SetIterationTime(seconds);
    }
}

void add(const char *name, const Files &before, const char *file)
{
    benchmark::RegisterBenchmark(name, load, before, file)
        ->UseManualTime()
        ->Iterations(20)
        ->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);

    // Hosts have loaded Qt Widgets already, but X11Extras only because of the plug-in.
    const Files core = {QT_CORE_FILE};
    const Files gui = {QT_CORE_FILE, QT_GUI_FILE};
    const Files widgets = {QT_CORE_FILE, QT_GUI_FILE, QT_WIDGETS_FILE};
    const Files all = {QT_CORE_FILE, QT_GUI_FILE, QT_WIDGETS_FILE, QT_X11EXTRAS_FILE};
    add("Zendel/all", all, PLUGIN_FILE);
    add("Zendel/widgets", widgets, PLUGIN_FILE);
    add("Zendel/none", {}, PLUGIN_FILE);
    add("bareModule/all", all, BARE_MODULE_FILE);
    add("bareModule/widgets", widgets, BARE_MODULE_FILE);
    add("bareModule/none", {}, BARE_MODULE_FILE);
    add("Qt5Core", {}, QT_CORE_FILE);
    add("Qt5Gui", core, QT_GUI_FILE);
    add("Qt5Widgets", gui, QT_WIDGETS_FILE);
    add("Qt5X11Extras", widgets, QT_X11EXTRAS_FILE);

    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
