#include "langcheck/Report.h"

#include <QDir>

#include <algorithm>

QString HostQt::description() const
{
    return (version.isEmpty() ? QStringLiteral("unknown version") : version)
        + QStringLiteral(", for ")
        + (compiler.isEmpty() ? QStringLiteral("an unknown compiler") : compiler);
}

Finding &Report::addLine(FindingKind kind, int line, const QStringList &values)
{
    findings.append(Finding::make(kind, QStringLiteral("Lang/Lang.ini"), line, values));
    return findings.last();
}

Finding &Report::addFile(FindingKind kind, const QString &path, const QStringList &values)
{
    findings.append(Finding::make(kind, relative(path), 0, values));
    return findings.last();
}

int Report::count(Finding::Severity severity) const
{
    return static_cast<int>(
        std::count_if(findings.begin(), findings.end(),
                      [severity](const Finding &finding) { return finding.severity == severity; }));
}

int Report::exitCode() const
{
    if (findings.isEmpty())
        return 0;
    return count(Finding::Error) > 0 ? 2 : 1;
}

QStringList Report::dispensableFolders() const
{
    QStringList result = unusedFolders;
    result.removeAll(QStringLiteral("chs"));
    return result;
}

QString Report::relative(const QString &path) const
{
    return QDir(applicationDir).relativeFilePath(path);
}
