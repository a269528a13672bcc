#pragma once

#include <QStringList>

/// Collects warnings and critical messages instead of printing them.
namespace Warnings {

/// Starts collecting. Call it from initTestCase(), when Qt Test has installed its own message
/// handler, which it removes at the end.
void collect();

/// Returns the warnings since the last call, in order.
QStringList take();

/// Returns the warning that Qt logs for the unconnected slot of each language page.
QString unconnectedSlot();

} // namespace Warnings
