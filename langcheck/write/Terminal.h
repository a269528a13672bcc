#pragma once

#include <QString>

#include <cstdio>

/// What a stream is connected to.
struct Terminal
{
    int width = 0;        ///< In columns; 0 if it isn't a terminal, but a file or a pipe.
    bool colours = false; ///< Whether it shows colours, and the user wants them.
};

Terminal terminalOf(FILE *stream);

/// Prints in UTF-8 on all platforms, because language names are in all scripts; a console of
/// Windows gets them in UTF-16. Returns why not all was printed; empty if it was.
QString print(FILE *stream, const QString &text);

// For each platform:

/// Returns the terminal's width, or 80 if it isn't known; 0 if the stream isn't one.
int terminalWidth(FILE *stream);
/// Returns true if the terminal understands escape sequences.
bool understandsColours(FILE *stream);
/// Returns false if the platform needs no other function than for files, or the stream is a file.
bool printToConsole(FILE *stream, const QString &text);

/// Returns true if langcheck was started by a double-click, or by folders or files that were
/// dropped on it, and not from a command prompt or by a program.
bool isStartedByExplorer(int argc, char *argv[]);
/// Removes the console that Explorer has opened.
void closeConsole();
