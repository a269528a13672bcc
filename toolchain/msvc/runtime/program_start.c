#include "startup.h"

#include <stdlib.h>

// From the Universal C run-time library
void _set_app_type(int type);
int _configure_narrow_argv(int mode);
int _initialize_narrow_environment(void);

__attribute__((no_stack_protector)) // It fills the cookie itself.
void start_program(int type)
{
    const int unexpanded_arguments = 1;

    __security_init_cookie();
    _set_app_type(type);
    if (_configure_narrow_argv(unexpanded_arguments) != 0 || _initialize_narrow_environment() != 0
        || !run_initializers())
        exit(255);
}
