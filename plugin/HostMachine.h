#pragma once

/// @file
/// The recorded machine, which the whole plug-in shares.

class IHostMachine;

/// The host's machine object, not owned; null until CZendelIns::Init() records one. Read it at each
/// use, because the object may replace itself during a call by calling Init().
extern IHostMachine *g_pHostMachine;
