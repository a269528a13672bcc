// The destructors of static objects are registered by atexit(). Those of a DLL have to run when it
// is unloaded, so each module has its own table.
#include "startup.h"

typedef struct
{
    Initializer *first, *last, *end;
} OnexitTable;

// From the Universal C run-time library
int _crt_atexit(Initializer function);
int _initialize_onexit_table(OnexitTable *table);
int _register_onexit_function(OnexitTable *table, FallibleInitializer function);
int _execute_onexit_table(OnexitTable *table);

static OnexitTable table;
static int has_table;

int keep_atexit_functions(void)
{
    has_table = _initialize_onexit_table(&table) == 0;
    return has_table;
}

void run_atexit_functions(void)
{
    _execute_onexit_table(&table);
}

int atexit(Initializer function)
{
    return has_table ? _register_onexit_function(&table, (FallibleInitializer)function)
                     : _crt_atexit(function);
}
