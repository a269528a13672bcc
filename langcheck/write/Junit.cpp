#include "langcheck/write/Junit.h"

#include "langcheck/Texts.h"
#include "langcheck/write/Console.h"

#include <QHash>
#include <QXmlStreamWriter>

namespace {

/// The findings about a file, a line each.
struct Lines
{
    QStringList errors;
    QStringList warnings;
};

void writeTest(QXmlStreamWriter &out, const QString &file, const Lines &lines)
{
    out.writeStartElement(QStringLiteral("testcase"));
    out.writeAttribute(QStringLiteral("classname"), QStringLiteral("langcheck"));
    out.writeAttribute(QStringLiteral("name"), printable(file));
    if (!lines.errors.isEmpty()) {
        out.writeStartElement(QStringLiteral("failure"));
        out.writeAttribute(QStringLiteral("message"),
                           countedFindings(lines.errors.size(), lines.warnings.size()));
        out.writeCharacters(lines.errors.join(QLatin1Char('\n')));
        out.writeEndElement();
    }
    if (!lines.warnings.isEmpty()) {
        out.writeTextElement(QStringLiteral("system-out"), lines.warnings.join(QLatin1Char('\n')));
    }
    out.writeEndElement();
}

void writeSuite(QXmlStreamWriter &out, const Report &report)
{
    QStringList files {QStringLiteral("Lang/Lang.ini")};
    for (const LangEntry &language : report.listed)
        files += report.relative(language.qmPath);
    QHash<QString, Lines> found;
    for (const Finding &finding : report.findings) {
        files += finding.file;
        Lines &lines = found[finding.file];
        (finding.severity == Finding::Error ? lines.errors : lines.warnings) += toLine(finding);
    }
    files.removeDuplicates();
    const auto failures = std::count_if(found.begin(), found.end(),
                                        [](const Lines &lines) { return !lines.errors.isEmpty(); });

    out.writeStartElement(QStringLiteral("testsuite"));
    out.writeAttribute(QStringLiteral("name"), printable(report.applicationDir, kLongestFinding));
    out.writeAttribute(QStringLiteral("tests"), QString::number(files.size()));
    out.writeAttribute(QStringLiteral("failures"), QString::number(failures));
    out.writeAttribute(QStringLiteral("errors"), QStringLiteral("0"));
    for (const QString &file : qAsConst(files))
        writeTest(out, file, found.value(file));
    out.writeEndElement();
}

} // namespace

QByteArray toJunit(const QVector<Report> &reports)
{
    QByteArray bytes;
    QXmlStreamWriter out(&bytes);
    out.setAutoFormatting(true);
    out.writeStartDocument();
    out.writeStartElement(QStringLiteral("testsuites"));
    for (const Report &report : reports)
        writeSuite(out, report);
    out.writeEndElement();
    out.writeEndDocument();
    return bytes;
}
