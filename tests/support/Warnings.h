#pragma once

#include <QStringList>

/// Collects what is logged as a warning or worse while it lives, in place of printing it.
class Warnings
{
public:
    Warnings();
    ~Warnings();

    Warnings(const Warnings &) = delete;
    Warnings &operator=(const Warnings &) = delete;

    /// The warnings since the last call, in order.
    static QStringList take();

    /// What Qt logs when a language page is made, because of its unconnected slot.
    static QString unconnectedSlot();
};
