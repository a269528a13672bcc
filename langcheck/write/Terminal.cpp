#include "langcheck/write/Terminal.h"

#include <QtGlobal>

#include <cerrno>
#include <system_error>

Terminal terminalOf(FILE *stream)
{
    const int width = terminalWidth(stream);
    return {width,
            width > 0 && qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb"
                && understandsColours(stream)};
}

QString print(FILE *stream, const QString &text)
{
    if (printToConsole(stream, text))
        return {};
    const QByteArray bytes = text.toUtf8();
    const auto size = static_cast<std::size_t>(bytes.size());
    errno = 0;
    // Flushed, because a full disk is often only noticed then.
    if (std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0)
        return {};
    return QStringLiteral("Can't write the output: ")
        + QString::fromLocal8Bit(std::generic_category().message(errno).c_str()) + QLatin1Char('.');
}
