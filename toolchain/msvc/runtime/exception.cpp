// libc++'s src/exception.cpp without Microsoft's C++ library (msvcp140.dll), which it would use for
// std::exception_ptr. Condition variables refer to it through std::future, but never store an
// exception, so here it is always null.
#include <cstdlib>
#include <cwchar>
#include <exception>
#include <new>
#include <typeinfo>

#include "support/runtime/exception_msvc.ipp"

// As in Microsoft's library. msvc-sysroot.sh changes the headers accordingly.
static_assert(sizeof(std::exception) == 24 && sizeof(std::bad_alloc) == 24);
static_assert(sizeof(std::mbstate_t) == 8);

namespace std {

exception_ptr::exception_ptr() noexcept
    : __ptr1_(nullptr)
    , __ptr2_(nullptr)
{
}
exception_ptr::exception_ptr(nullptr_t) noexcept
    : exception_ptr()
{
}
exception_ptr::exception_ptr(const exception_ptr &) noexcept
    : exception_ptr()
{
}
exception_ptr &exception_ptr::operator=(const exception_ptr &) noexcept
{
    return *this;
}
exception_ptr::~exception_ptr() noexcept { }
bool operator==(const exception_ptr &, const exception_ptr &) noexcept
{
    return true;
}

exception_ptr __copy_exception_ptr(void *, const void *)
{
    abort();
}
void rethrow_exception(exception_ptr)
{
    abort();
}

} // namespace std
