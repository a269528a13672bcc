#include "langcheck/write/Terminal.h"

#include <QtGlobal>

#include <sys/ioctl.h>
#include <unistd.h>

int terminalWidth(FILE *stream)
{
    if (isatty(fileno(stream)) == 0)
        return 0;
    winsize size = {};
    const bool known = ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

bool understandsColours(FILE * /*stream*/)
{
    return !qEnvironmentVariableIsEmpty("TERM");
}

bool printToConsole(FILE * /*stream*/, const QString & /*text*/)
{
    return false;
}

bool isStartedByExplorer(int /*argc*/, char * /*argv*/[])
{
    return false;
}

void closeConsole() { }
