#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QVector>
#include <QVersionNumber>

class QIODevice;

/// The families of compilers for Windows. Their C++ names differ.
enum class CompilerFamily { Unknown, Msvc, MinGw };

/// A function that a file uses from a DLL. One without a name is "#" and its number.
struct DllImport
{
    QString dll; ///< In lower case, because Windows ignores the case.
    QByteArray function;
};

/// What can be read from the file of a DLL or program without loading it.
struct Dll
{
    QString defect;         ///< Why 64-bit x86 Windows can't load it; empty if there is no reason.
    bool is32Bit = false;   ///< Whether it is for 32-bit x86, which is also a defect.
    QVersionNumber version; ///< From the version resource; null without one.
    CompilerFamily exports = CompilerFamily::Unknown;   ///< From the names that it exports.
    CompilerFamily qtImports = CompilerFamily::Unknown; ///< From the names that it imports from Qt.
    QVector<DllImport> imports;
    QSet<QByteArray> exportedFunctions; ///< Their names and numbers.
};

/// Reads a DLL from an open file, which may contain any bytes.
Dll readDll(QIODevice &file);

/// Reads a program in the same way.
Dll readProgram(QIODevice &file);
