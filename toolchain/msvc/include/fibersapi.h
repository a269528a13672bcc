// Wine declares these functions in winbase.h.
#pragma once
#include <windows.h>
