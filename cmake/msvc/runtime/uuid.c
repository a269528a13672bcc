// The identifiers of COM classes and interfaces, which Microsoft has in uuid.lib. mingw-w64's
// library doesn't serve, because some of its identifiers may not be defined in another object as
// well.
#include <initguid.h>

#include <windows.h>

#include <ole2.h>
#include <shlguid.h>
#include <shlobj.h>
#include <shobjidl.h>
