#pragma once

#include <QtGlobal>

/// Environment variables for tests that do something many times or at random.
namespace Settings {

inline quint32 setting(const char *name, quint32 otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariable(name).toUInt() : otherwise;
}

/// Returns ZENDEL_STEPS, or @p otherwise.
inline quint32 stepCount(quint32 otherwise)
{
    return setting("ZENDEL_STEPS", otherwise);
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
