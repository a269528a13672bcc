// Measures loading a translation and checking that its texts can be looked up, for plain files and
// for files crafted to keep a reader busy.

#include "bench/Deployment.h"
#include "lang/CTranslatorMgr.h"
#include "lang/QmFile.h"

#include "support/CraftedQmFiles.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QTranslator>

#include <string>

namespace {

/// Reads the catalogue and loads the file, as Init() does, but without a message box on failure.
void load(benchmark::State &state, const QByteArray &bytes, bool usable)
{
    const QString catalogue = useDeployment(10, "UTF-8");
    const QString fileName = QFileInfo(catalogue).path() + QStringLiteral("/bench.qm");
    QFile::remove(fileName); // Not overwritten, because Qt may have it mapped into memory.
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        state.SkipWithError("the translation can't be written");
        return;
    }
    file.close();

    CTranslatorMgr mgr;
    bool loaded = false;
    for ([[maybe_unused]] auto _ : state) {
        mgr.loadLangConfig();
        loaded = loadQmFile(*mgr.translator(), fileName);
    }
    if (loaded != usable)
        state.SkipWithError("loading the translation did not give the expected result");
}

void add(const char *name, const QByteArray &bytes, bool usable = true)
{
    benchmark::RegisterBenchmark((std::string("load/") + name).c_str(), load, bytes, usable);
}

} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);

    add("1 KB", completeQmFile());
    add("4 MB", largeQmFile());
    for (const CraftedQmFile &file : costlyQmFiles())
        add(file.name, file.bytes, false);

    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
