// Checks a deployment made of the fuzzer's input with langcheck, and aborts if the report or its
// page is invalid. The input is a catalogue, a compiled translation, or a catalogue and a
// translation: the latter starts with the magic number of such files. An input that starts with
// "MZ" is a DLL of the host.

#include "langcheck/check/DeploymentCheck.h"
#include "langcheck/write/Console.h"
#include "langcheck/write/Json.h"
#include "langcheck/write/Junit.h"
#include "langcheck/write/Page.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <numeric>

namespace {

const QByteArray kMagic("\x3C\xB8\x64\x18\xCA\xEF\x9C\x95\xCD\x21\x1C\xBF\x60\xA1\xBD\xDD", 16);
const QByteArray kCatalogue("[LANG_MGR]\nDEFAULT=1\nLANG1_NAME=One\nLANG1_FOLDER=one\n"
                            "LANG1_SHOW=1\nLANG2_NAME=Two\nLANG2_FOLDER=none\nLANG2_SHOW=1\n");

[[noreturn]] void fail(const char *what, const QString &details = {})
{
    std::cerr << what << ": " << details.toStdString() << '\n';
    std::abort();
}

void write(const QString &path, const QByteArray &bytes)
{
    // Removed first, because Qt may still have the old file mapped into memory.
    QFile::remove(path);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        fail("Can't write", path);
}

void checkXml(const QByteArray &document)
{
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("script"))
            fail("A script");
    }
    if (reader.hasError())
        fail("Not well-formed", reader.errorString());
    for (const char c : document) { // The reader accepts them.
        if ((c >= 0 && c < ' ' && c != '\n' && c != '\t') || c == 0x7F)
            fail("A control character");
    }
}

void checkReport(const Report &report, const QByteArray &catalogue)
{
    const int lines = catalogue.count('\n') + 1;
    for (const Finding &finding : report.findings) {
        if (finding.remedy().isEmpty())
            fail("No remedy", finding.text());
        if (finding.line < 0 || finding.line > lines)
            fail("No such line", finding.text());
    }
    if (report.selected >= report.listed.size())
        fail("No such language");
    if (!report.boxes.isEmpty() && report.exitCode() != 2)
        fail("A message box without an error", toText(report));
    toText(report);
    toTerminalText(report, 80, true);
    toJson(report);
    checkXml(toJunit({report}));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                              const QString & /*message*/) {});
    new QApplication(*argc, *argv); // Never deleted, because Qt's platform plug-in is gone at exit.
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    const QString lang = folder.filePath(QStringLiteral("Lang"));
    for (const char *const name : {"/one", "/chs"}) {
        if (!QDir().mkpath(lang + QLatin1String(name)))
            fail("Can't create", lang);
    }

    QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QByteArray dll = input.startsWith("MZ") ? input : QByteArray();
    for (const char *const name : {"/Qt5Core.dll", "/Qt5Gui.dll", "/Zendel.dll", "/host.exe"}) {
        QFile::remove(folder.path() + QLatin1String(name));
        if (!dll.isEmpty())
            write(folder.path() + QLatin1String(name), dll);
    }
    if (!dll.isEmpty())
        input = kCatalogue;
    const int start = input.indexOf(kMagic);
    QByteArray catalogue = input.left(start);
    const QByteArray translation = start < 0 ? QByteArray() : input.mid(start);
    if (start == 0)
        catalogue = kCatalogue;
    write(lang + QStringLiteral("/Lang.ini"), catalogue);
    for (const char *const name : {"/one/Zendel.qm", "/chs/Zendel.qm"})
        write(lang + QLatin1String(name), translation);

    Report report = checkDeployment(QDir(folder.path()).canonicalPath());
    checkReport(report, catalogue);
    // Pictures take longer than all checks.
    QVector<LanguagePictures> pictures;
    StartPictures opened;
    if (std::accumulate(data, data + size, 0U) % 64 == 0) {
        opened = drawStart(report);
        Report first = report; // All would take too long.
        first.listed = report.listed.mid(0, 1);
        pictures = drawLanguages(first);
    } else {
        for (Box &box : report.boxes)
            box.picture = {};
    }
    checkXml(makePage(report, opened, pictures));
    return 0;
}
