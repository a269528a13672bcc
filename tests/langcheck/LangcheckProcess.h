#pragma once

#include "support/TestFile.h"

#include <QFile>
#include <QProcess>
#include <QTest>

/// How langcheck is run, for tests that define LANGCHECK_FILE.
struct LangcheckCall
{
    QStringList arguments;
    int exitCode = 0;                                ///< The expected one
    QStringList wrapper = {};                        ///< A program that runs langcheck
    QString folder = testFile(QStringLiteral("..")); ///< The current one, without Lang
    QString program = testFile(QStringLiteral(LANGCHECK_FILE));
};

/// What langcheck printed to stdout and stderr.
struct LangcheckOutput
{
    QByteArray text;
    QByteArray errors;
};

inline LangcheckOutput runLangcheck(const LangcheckCall &call)
{
    QStringList command(call.wrapper);
    command << call.program << call.arguments;
    const QString program = command.takeFirst();
    QProcess process;
    process.setWorkingDirectory(call.folder);
    process.start(program, command);
    if (!process.waitForFinished(120000))
        QTest::qFail(qPrintable(process.errorString()), __FILE__, __LINE__);
    LangcheckOutput output {process.readAllStandardOutput(), process.readAllStandardError()};
    output.text.replace("\r\n", "\n");
    output.errors.replace("\r\n", "\n");
    QTest::qCompare(process.exitCode(), call.exitCode,
                    (output.text.left(5000) + output.errors).constData(), "exit code", __FILE__,
                    __LINE__);
    return output;
}

/// Returns what langcheck prints to stderr.
inline QByteArray runLangcheck(const QStringList &arguments, int exitCode,
                               const QStringList &wrapper = {})
{
    return runLangcheck(LangcheckCall {arguments, exitCode, wrapper}).errors;
}

/// Returns a wrapper that limits files to one block, so that writing fails as on a full disk.
inline QStringList onFullDisk()
{
    return {QStringLiteral("/bin/sh"), QStringLiteral("-c"),
            QStringLiteral("trap '' XFSZ; ulimit -f 1; exec \"$0\" \"$@\"")};
}
