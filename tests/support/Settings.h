#pragma once

#include <QtGlobal>

/// What the environment sets for tests that do something many times, or at random.
namespace Settings {

inline quint32 setting(const char *name, quint32 otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariable(name).toUInt() : otherwise;
}

/// ZENDEL_STEPS, or @p otherwise.
inline quint32 stepCount(quint32 otherwise)
{
    return setting("ZENDEL_STEPS", otherwise);
}

/// ZENDEL_SEED, or 1.
inline quint32 seed()
{
    return setting("ZENDEL_SEED", 1);
}

/// ZENDEL_FIRST, the number of the first step, or 0: repeats a single step.
inline quint32 firstStep()
{
    return setting("ZENDEL_FIRST", 0);
}

} // namespace Settings
