// The entry point of a console program.
#include "startup.h"

#include <stdlib.h>

int main(int argc, char **argv, char **environment);

__attribute__((no_stack_protector)) // The cookie changes while it runs.
int mainCRTStartup(void)
{
    start_program(1);
    exit(main(*__p___argc(), *__p___argv(), *__p__environ()));
}
