#pragma once

#include <QString>
#include <QVersionNumber>

class QIODevice;

/// The families of compilers for Windows. Their C++ names differ.
enum class CompilerFamily { Unknown, Msvc, MinGw };

/// What can be read from the file of a DLL or program without loading it.
struct Dll
{
    QString defect;         ///< Why 64-bit x86 Windows can't load it; empty if there is no reason.
    QVersionNumber version; ///< From the version resource; null without one.
    CompilerFamily exports = CompilerFamily::Unknown;   ///< From the names that it exports.
    CompilerFamily qtImports = CompilerFamily::Unknown; ///< From the names that it imports from Qt.
};

/// Reads a DLL from an open file, which may contain any bytes.
Dll readDll(QIODevice &file);

/// Reads a program in the same way.
Dll readProgram(QIODevice &file);
