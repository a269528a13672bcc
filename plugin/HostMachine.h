#pragma once

/// @file
/// The recorded host, for all parts of the plug-in.

class IHostMachine;

/// The host's machine object, not owned; null until CZendelIns::Init() records one. Only Init()
/// writes it, and it outlives the manager. The host may replace it during any of its own calls,
/// so it is read afresh at every use and never copied.
extern IHostMachine *g_pHostMachine;
