// Wine's header defines the macro behind a structure with a member of the same name. With
// Microsoft's, the macro comes first and renames the member as well.
#ifdef UNICODE
#    define DeleteFile DeleteFileW
#else
#    define DeleteFile DeleteFileA
#endif
#include_next <winbase.h>

#ifndef SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE
#    define SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE 2
#endif
