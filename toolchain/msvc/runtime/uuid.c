// The identifiers of COM classes and interfaces, which Microsoft defines in uuid.lib and
// dxguid.lib. mingw-w64's libraries can't be used, because some of their identifiers mustn't be
// defined in another object as well.
#include <initguid.h>

#include <windows.h>

#include <d3d11_1.h>
#include <dxgi1_6.h>
#include <ole2.h>
#include <shlguid.h>
#include <shlobj.h>
#include <shobjidl.h>
