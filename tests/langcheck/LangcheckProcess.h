#pragma once

#include "support/TestFile.h"

#include <QFile>
#include <QProcess>
#include <QTest>

/// Runs langcheck, for tests that define LANGCHECK_FILE. Returns what it prints to stderr and, if
/// the channels are merged, to stdout. @p wrapper is a program with arguments that runs it.
inline QByteArray runLangcheck(const QStringList &arguments, int exitCode,
                               QProcess::ProcessChannelMode mode = QProcess::SeparateChannels,
                               QStringList wrapper = {})
{
    wrapper += testFile(QStringLiteral(LANGCHECK_FILE));
    const QString program = wrapper.takeFirst();
    QProcess process;
    process.setProcessChannelMode(mode);
    process.start(program, wrapper + arguments);
    if (!process.waitForFinished(120000))
        QTest::qFail(qPrintable(process.errorString()), __FILE__, __LINE__);
    QByteArray output =
        mode == QProcess::MergedChannels ? process.readAll() : process.readAllStandardError();
    output.replace("\r\n", "\n");
    QTest::qCompare(process.exitCode(), exitCode, output.constData(), "exit code", __FILE__,
                    __LINE__);
    return output;
}
