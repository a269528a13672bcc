#include "support/Heaps_win32.h"

#include <QtGlobal>

#include <windows.h>

namespace {

/// Applies HeapValidate() to all heaps, and returns in how many it succeeds. Allocates nothing,
/// because a new block could be where a freed one was.
DWORD countValid(const void *block, DWORD &heapCount)
{
    HANDLE heaps[100];
    heapCount = qMin<DWORD>(GetProcessHeaps(100, heaps), 100);
    DWORD valid = 0;
    for (DWORD i = 0; i < heapCount; ++i)
        valid += HeapValidate(heaps[i], 0, block) ? 1 : 0;
    return valid;
}

} // namespace

namespace Heaps {

bool isAllocated(const void *block)
{
    DWORD heapCount = 0;
    return countValid(block, heapCount) > 0;
}

bool areValid()
{
    DWORD heapCount = 0;
    return countValid(nullptr, heapCount) == heapCount && heapCount > 0;
}

} // namespace Heaps
