#include "langcheck/Report.h"

#include "langcheck/Texts.h"

#include <QDir>
#include <QJsonArray>
#include <QTextStream>

#include <algorithm>

namespace {

QString severityName(const Finding &finding)
{
    return finding.severity == Finding::Error ? QStringLiteral("error") : QStringLiteral("warning");
}

QString count(int number, const QString &noun)
{
    return QString::number(number) + QLatin1Char(' ') + noun
        + QLatin1String(number == 1 ? "" : "s");
}

} // namespace

QString HostQt::description() const
{
    return (version.isEmpty() ? QStringLiteral("unknown version") : version)
        + QStringLiteral(", for ")
        + (compiler.isEmpty() ? QStringLiteral("an unknown compiler") : compiler);
}

Finding &Report::addLine(FindingKind kind, int line, const QStringList &values)
{
    findings.append(makeFinding(kind, QStringLiteral("Lang/Lang.ini"), line, values));
    return findings.last();
}

Finding &Report::addFile(FindingKind kind, const QString &path, const QStringList &values)
{
    findings.append(makeFinding(kind, QDir(applicationDir).relativeFilePath(path), 0, values));
    return findings.last();
}

int Report::exitCode() const
{
    int code = 0;
    for (const Finding &finding : findings)
        code = std::max(code, finding.severity == Finding::Error ? 2 : 1);
    return code;
}

QString Report::toText() const
{
    QString text;
    QTextStream out(&text);
    out << "Catalogue:    Lang/Lang.ini, ";
    if (encoding.isEmpty())
        out << "can't be opened\n";
    else
        out << "read as " << encoding << " because " << encodingReason << '\n';

    out << "Languages:    ";
    if (listed.isEmpty())
        out << "none; the operator's list is empty\n";
    for (int i = 0; i < listed.size(); ++i) {
        out << (i == 0 ? "" : "              ") << listed.at(i).id << ' '
            << printable(listed.at(i).name) << (i == selected ? " (selected)" : "") << '\n';
    }
    out << "Default:      " << defaultLangId << '\n';
    out << "Translation:  "
        << (translation.isEmpty() ? QStringLiteral("none; all texts are empty")
                                  : printable(QDir(applicationDir).relativeFilePath(translation)))
        << (fallback ? ", the fallback" : "") << '\n';

    out << "Messages:     ";
    if (boxes.isEmpty())
        out << "none\n";
    for (int i = 0; i < boxes.size(); ++i) {
        const Box &box = boxes.at(i);
        out << (i == 0 ? "" : "              ") << box.icon << ", \"" << printable(box.title)
            << "\": " << printable(box.text, kLongestFinding) << '\n';
    }
    if (hostQt)
        out << "Host's Qt:    " << hostQt->description() << '\n';
    if (hostFails) {
        out << "Host:         may not start, or may not load the plug-in, because of its DLLs; "
               "the lines above apply once it does\n";
    }
    out << '\n';

    for (const Finding &finding : findings) {
        out << printable(finding.file);
        if (finding.line > 0)
            out << ':' << finding.line;
        out << ": " << severityName(finding) << ": " << printable(finding.text, kLongestFinding)
            << " [" << finding.id << "]\n";
    }
    const int errors = static_cast<int>(
        std::count_if(findings.begin(), findings.end(),
                      [](const Finding &finding) { return finding.severity == Finding::Error; }));
    out << count(errors, QStringLiteral("error")) << ", "
        << count(findings.size() - errors, QStringLiteral("warning")) << '\n';
    return text;
}

QJsonObject Report::toJson() const
{
    QJsonArray languages;
    for (int i = 0; i < listed.size(); ++i) {
        const LangEntry &lang = listed.at(i);
        languages.append(QJsonObject {{QStringLiteral("number"), lang.id},
                                      {QStringLiteral("name"), lang.name},
                                      {QStringLiteral("folder"), lang.folder},
                                      {QStringLiteral("translation"), lang.qmPath},
                                      {QStringLiteral("selected"), i == selected}});
    }
    QJsonArray messageBoxes;
    for (const Box &box : boxes) {
        messageBoxes.append(QJsonObject {{QStringLiteral("icon"), box.icon},
                                         {QStringLiteral("title"), box.title},
                                         {QStringLiteral("text"), box.text}});
    }
    QJsonArray all;
    for (const Finding &finding : findings) {
        all.append(QJsonObject {{QStringLiteral("file"), finding.file},
                                {QStringLiteral("line"), finding.line},
                                {QStringLiteral("severity"), severityName(finding)},
                                {QStringLiteral("kind"), finding.id},
                                {QStringLiteral("text"), finding.text},
                                {QStringLiteral("quote"), finding.quote}});
    }
    QJsonObject json = {{QStringLiteral("formatVersion"), 1},
                        {QStringLiteral("applicationDir"), applicationDir},
                        {QStringLiteral("encoding"), encoding},
                        {QStringLiteral("encodingReason"), encodingReason},
                        {QStringLiteral("languages"), languages},
                        {QStringLiteral("default"), defaultLangId},
                        {QStringLiteral("translation"), translation},
                        {QStringLiteral("fallback"), fallback},
                        {QStringLiteral("boxes"), messageBoxes},
                        {QStringLiteral("hostFails"), hostFails},
                        {QStringLiteral("findings"), all}};
    if (hostQt) {
        json.insert(QStringLiteral("hostQt"),
                    QJsonObject {{QStringLiteral("version"), hostQt->version},
                                 {QStringLiteral("compiler"), hostQt->compiler}});
    }
    return json;
}
