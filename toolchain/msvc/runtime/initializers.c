#include "startup.h"

// The linker sorts the sections by name, so these four variables enclose what is between A and Z.
#pragma section(".CRT$XIA", long, read)
#pragma section(".CRT$XIZ", long, read)
#pragma section(".CRT$XCA", long, read)
#pragma section(".CRT$XCZ", long, read)
static __declspec(allocate(".CRT$XIA")) FallibleInitializer first_c = 0;
static __declspec(allocate(".CRT$XIZ")) FallibleInitializer last_c = 0;
static __declspec(allocate(".CRT$XCA")) Initializer first_cxx = 0;
static __declspec(allocate(".CRT$XCZ")) Initializer last_cxx = 0;

// From the Universal C run-time library
int _initterm_e(FallibleInitializer *first, FallibleInitializer *last);
void _initterm(Initializer *first, Initializer *last);

// Thread-local variables need the TLS directory, which comes from mingw-w64.
#pragma comment(linker, "/include:_tls_used")

// The compiler's name for the function that touches each page of a large stack frame.
#pragma comment(linker, "/alternatename:__chkstk=___chkstk_ms")

// mingw-w64's TLS callback reads it. 1 means that several threads may use the module.
int _CRT_MT = 1;

// The compiler refers to it wherever a floating-point number occurs.
int _fltused = 0x9875;

int run_initializers(void)
{
    if (_initterm_e(&first_c, &last_c) != 0)
        return 0;
    _initterm(&first_cxx, &last_cxx);
    return 1;
}
