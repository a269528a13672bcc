#include "langcheck/write/Console.h"

#include "langcheck/Texts.h"

#include <QTextStream>

namespace {

QString count(int number, const QString &noun)
{
    return QString::number(number) + QLatin1Char(' ') + noun
        + QLatin1String(number == 1 ? "" : "s");
}

} // namespace

QString toText(const Report &report)
{
    QString text;
    QTextStream out(&text);
    out << "Catalogue:    Lang/Lang.ini, ";
    if (report.encoding.isEmpty())
        out << "can't be opened\n";
    else
        out << "read as " << report.encoding << " because " << report.encodingReason << '\n';

    out << "Languages:    ";
    if (report.listed.isEmpty())
        out << "none; the operator's list is empty\n";
    for (int i = 0; i < report.listed.size(); ++i) {
        out << (i == 0 ? "" : "              ") << report.listed.at(i).id << ' '
            << printable(report.listed.at(i).name) << (i == report.selected ? " (selected)" : "")
            << '\n';
    }
    out << "Default:      " << report.defaultLangId << '\n';
    out << "Translation:  "
        << (report.translation.isEmpty() ? QStringLiteral("none; all texts are empty")
                                         : printable(report.relative(report.translation)))
        << (report.fallback ? ", the fallback" : "") << '\n';

    out << "Messages:     ";
    if (report.boxes.isEmpty())
        out << "none\n";
    for (int i = 0; i < report.boxes.size(); ++i) {
        const Box &box = report.boxes.at(i);
        out << (i == 0 ? "" : "              ") << box.icon << ", \"" << printable(box.title)
            << "\": " << printable(box.text, kLongestFinding) << '\n';
    }
    if (report.hostQt)
        out << "Host's Qt:    " << report.hostQt->description() << '\n';
    if (report.hostFails) {
        out << "Host:         may not start, or may not load the plug-in, because of its DLLs; "
               "the lines above apply once it does\n";
    }
    out << '\n';

    for (const Finding &finding : report.findings) {
        out << printable(finding.file);
        if (finding.line > 0)
            out << ':' << finding.line;
        out << ": " << severityName(finding.severity) << ": "
            << printable(finding.text(), kLongestFinding) << " [" << finding.id() << "]\n";
    }
    out << count(report.count(Finding::Error), QStringLiteral("error")) << ", "
        << count(report.count(Finding::Warning), QStringLiteral("warning")) << '\n';
    return text;
}
