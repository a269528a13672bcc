// Guards the first initialization of local static objects, as the compiler option
// /Zc:threadSafeInit describes. The compiler tests a static object's guard against the thread's
// epoch, and calls these functions while the guard is newer.
#include <windows.h>

#include <limits.h>

enum { UNINITIALIZED = 0, BEING_INITIALIZED = -1 };

// The compiler uses these names. An initialized object's guard is the global epoch of that moment;
// a thread whose epoch isn't older has seen the object and doesn't ask again.
int _Init_global_epoch = INT_MIN;
__declspec(thread) int _Init_thread_epoch = INT_MIN;

static SRWLOCK lock = SRWLOCK_INIT;
static CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;

/// Waits while another thread initializes the object. Afterwards the caller has to initialize it if
/// @p guard is BEING_INITIALIZED.
void _Init_thread_header(int *guard)
{
    AcquireSRWLockExclusive(&lock);
    while (*guard == BEING_INITIALIZED)
        SleepConditionVariableSRW(&changed, &lock, INFINITE, 0);
    if (*guard == UNINITIALIZED)
        *guard = BEING_INITIALIZED;
    else
        _Init_thread_epoch = _Init_global_epoch;
    ReleaseSRWLockExclusive(&lock);
}

/// Ends an initialization.
void _Init_thread_footer(int *guard)
{
    AcquireSRWLockExclusive(&lock);
    *guard = ++_Init_global_epoch;
    _Init_thread_epoch = _Init_global_epoch;
    ReleaseSRWLockExclusive(&lock);
    WakeAllConditionVariable(&changed);
}

/// Ends an initialization that threw an exception; the next caller tries again.
void _Init_thread_abort(int *guard)
{
    AcquireSRWLockExclusive(&lock);
    *guard = UNINITIALIZED;
    ReleaseSRWLockExclusive(&lock);
    WakeAllConditionVariable(&changed);
}
