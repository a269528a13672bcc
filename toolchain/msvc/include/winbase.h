// Wine's header defines the macro after a structure with a member of the same name. In Microsoft's
// header, the macro comes first and so renames the member as well.
#ifdef UNICODE
#    define DeleteFile DeleteFileW
#else
#    define DeleteFile DeleteFileA
#endif
#include_next <winbase.h>

#ifndef SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE
#    define SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE 2
#endif
