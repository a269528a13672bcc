#pragma once

#include <QByteArray>

/// Whether Qt stays inside @p bytes, a compiled translation, when it looks texts up in it. Loading
/// one, Qt checks the lengths of the file's blocks only; what lies in them it believes, and reads
/// beyond the file, without end or not at all where a length or an offset there is damaged.
bool staysInside(const QByteArray &bytes);
