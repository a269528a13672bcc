// Measures reading the language catalogue, compared with other ways to read the same file.

#include "bench/Deployment.h"
#include "lang/CTranslatorMgr.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QTextCodec>
#include <QTextStream>
#include <QTranslator>

#include <string>

namespace {

using Routine = void (*)(benchmark::State &state, const QString &path, int languages);

/// Loads the catalogue and the translation of its default language, as Init() does.
void loadTranslator(benchmark::State &state, const QString & /*path*/, int languages)
{
    CTranslatorMgr mgr;
    for ([[maybe_unused]] auto _ : state)
        mgr.loadTranslator();
    if (mgr.visibleLanguages().size() != languages)
        state.SkipWithError("not all languages are read");
    if (mgr.translator()->isEmpty())
        state.SkipWithError("the translation is not loaded");
}

void checkKeys(benchmark::State &state, int keys, int languages)
{
    if (keys != 4 * languages + 1)
        state.SkipWithError("not all keys are read");
}

/// Measures @p readKeys, which reads the keys from a stream and returns their number.
template<typename Function>
void readStream(benchmark::State &state, const QString &path, int languages, Function readKeys)
{
    int keys = 0;
    for ([[maybe_unused]] auto _ : state) {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        QTextStream in(&file);
        in.setCodec("UTF-8");
        keys = readKeys(in);
    }
    checkKeys(state, keys, languages);
}

/// The baseline: splits and trims the lines.
void splitLines(benchmark::State &state, const QString &path, int languages)
{
    readStream(state, path, languages, [](QTextStream &in) {
        int keys = 0;
        while (!in.atEnd()) {
            const QString line = in.readLine().trimmed();
            const int equals = line.indexOf(QLatin1Char('='));
            if (equals <= 0)
                continue;
            benchmark::DoNotOptimize(line.left(equals).trimmed());
            benchmark::DoNotOptimize(line.mid(equals + 1).trimmed());
            ++keys;
        }
        return keys;
    });
}

/// Does the same without copying text, like the plug-in's reader; with @p match, also matches the
/// keys, as that reader has to.
template<bool match>
void splitInPlace(benchmark::State &state, const QString &path, int languages)
{
    const QRegularExpression pattern(QStringLiteral("^LANG(\\d+)_(ID|NAME|FOLDER|SHOW)$"));
    readStream(state, path, languages, [&pattern](QTextStream &in) {
        int keys = 0;
        QString text;
        while (in.readLineInto(&text)) {
            const QStringRef line = QStringRef(&text).trimmed();
            const int equals = line.indexOf(QLatin1Char('='));
            if (equals <= 0)
                continue;
            const QStringRef key = line.left(equals).trimmed();
            benchmark::DoNotOptimize(key);
            benchmark::DoNotOptimize(line.mid(equals + 1).trimmed());
            if (match)
                benchmark::DoNotOptimize(pattern.match(key).hasMatch());
            ++keys;
        }
        return keys;
    });
}

/// Reads all values with QSettings.
void settings(benchmark::State &state, const QString &path, int languages)
{
    // QSettings caches a file until it changes.
    QFile file(path);
    static QDateTime modified = QDateTime::currentDateTime();

    int keys = 0;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        modified = modified.addSecs(1);
        if (!file.open(QIODevice::ReadWrite)
            || !file.setFileTime(modified, QFileDevice::FileModificationTime)) {
            state.SkipWithError("the file's time can't be set");
            break;
        }
        file.close();
        state.ResumeTiming();

        QSettings ini(path, QSettings::IniFormat);
        ini.setIniCodec("UTF-8");
        ini.beginGroup(QStringLiteral("LANG_MGR"));
        const QStringList names = ini.childKeys();
        for (const QString &name : names)
            benchmark::DoNotOptimize(ini.value(name).toString());
        keys = names.size();
    }
    checkKeys(state, keys, languages);
}

/// Reads and decodes the file's bytes.
void decode(benchmark::State &state, const QString &path, int languages)
{
    int size = 0;
    for ([[maybe_unused]] auto _ : state) {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        const QString text = QTextCodec::codecForName("UTF-8")->toUnicode(file.readAll());
        size = text.size();
        benchmark::DoNotOptimize(text.constData());
    }
    if (size < languages)
        state.SkipWithError("not all text is read");
}

void add(const char *name, Routine routine, int languages, const QByteArray &encoding = "UTF-8")
{
    const std::string fullName =
        std::string(name) + '/' + encoding.toStdString() + '/' + std::to_string(languages);
    benchmark::RegisterBenchmark(fullName.c_str(), [=](benchmark::State &state) {
        const QString path = useDeployment(languages, encoding);
        if (path.isEmpty())
            state.SkipWithError("the catalogue can't be written");
        else
            routine(state, path, languages);
    });
}

} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);

    for (const int languages : {10, 100, 1000, 10000, 100000}) {
        add("loadTranslator", loadTranslator, languages);
        add("splitLines", splitLines, languages);
        add("splitInPlace", splitInPlace<false>, languages);
        add("matchInPlace", splitInPlace<true>, languages);
        add("QSettings", settings, languages);
        add("decode", decode, languages);
    }
    add("loadTranslator", loadTranslator, 10000, "UTF-16LE");
    add("loadTranslator", loadTranslator, 10000, "GB2312");

    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
