#pragma once

#include <QByteArray>
#include <QList>
#include <QVector>
#include <QVersionNumber>

/// What a DLL imports from another one. An empty name is an import of the function with number 1.
struct ImportedDll
{
    QByteArray name;
    QList<QByteArray> functions;
};

/// The contents of a DLL for tests, which has tables but no code.
struct DllContents
{
    QList<QByteArray> exports;
    QVector<ImportedDll> imports;
    int importRepetitions = 1;        ///< How often each DLL is in the import table.
    QVersionNumber version;           ///< Null for no version resource.
    quint16 machine = 0x8664;         ///< With 0x014C, the file is in the format for 32-bit x86.
    quint16 characteristics = 0x2022; ///< An executable file for large addresses, and a DLL.
};

/// Returns the DLL's file. Each table has a section of its own.
QByteArray makeDll(const DllContents &contents);
