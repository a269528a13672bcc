#pragma once

#include <QByteArray>
#include <QList>
#include <QVersionNumber>

/// The contents of a DLL for tests, which has tables but no code.
struct DllContents
{
    QList<QByteArray> exports;
    QByteArray importedDll = "Qt5Core.dll";
    QList<QByteArray> imports; ///< An empty name is an import by ordinal.
    int importRepetitions = 1; ///< How often the DLL is in the import table.
    QVersionNumber version;    ///< Null for no version resource.
    quint16 machine = 0x8664;
    quint16 characteristics = 0x2022; ///< An executable file for large addresses, and a DLL.
};

/// Returns the DLL's file. Each table has a section of its own.
QByteArray makeDll(const DllContents &contents);
