#pragma once

#include <QStringList>

/// What is logged as a warning or worse, collected instead of printed.
namespace Warnings {

/// Begins to collect. To be called from initTestCase(): Qt Test puts its own handler in place
/// before that, and takes it away at the end.
void collect();

/// The warnings since the last call, in order.
QStringList take();

/// What Qt logs when a language page is made, because of its unconnected slot.
QString unconnectedSlot();

} // namespace Warnings
