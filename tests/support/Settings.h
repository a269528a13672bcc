#pragma once

#include <QtGlobal>

/// Environment variables for tests that repeat something or choose at random.
namespace Settings {

inline quint32 setting(const char *name, quint32 fallback)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariable(name).toUInt() : fallback;
}

/// Returns ZENDEL_STEPS, or @p fallback if it is not set.
inline quint32 stepCount(quint32 fallback)
{
    return setting("ZENDEL_STEPS", fallback);
}

/// Returns ZENDEL_SEED, or 1.
inline quint32 seed()
{
    return setting("ZENDEL_SEED", 1);
}

/// Returns ZENDEL_FIRST, the number of the first step, or 0. Used to repeat a single step.
inline quint32 firstStep()
{
    return setting("ZENDEL_FIRST", 0);
}

} // namespace Settings
