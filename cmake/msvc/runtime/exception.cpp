// libc++'s src/exception.cpp without std::exception_ptr, for which that uses Microsoft's C++ library
// (msvcp140.dll). A program that uses one doesn't link.
#include <exception>
#include <new>
#include <typeinfo>

#include "support/runtime/exception_msvc.ipp"
