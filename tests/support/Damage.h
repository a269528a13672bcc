#pragma once

#include <QByteArray>

#include <random>

/// Returns the bytes as a failing disk or an aborted copy might leave them: with bits flipped,
/// bytes overwritten, a run of zeros, two blocks swapped, or cut off.
QByteArray damaged(QByteArray bytes, std::mt19937 &random);
