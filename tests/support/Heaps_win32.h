#pragma once

/// The heaps of this process.
namespace Heaps {

/// Returns true if @p block is the start of an allocated block of any heap.
bool isAllocated(const void *block);

/// Returns true if the system finds no damage in any heap. Wine doesn't look between small blocks
/// of a size that is used often.
bool areValid();

} // namespace Heaps
