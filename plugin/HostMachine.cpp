#include "plugin/HostMachine.h"

IHostMachine *g_pHostMachine = nullptr;
