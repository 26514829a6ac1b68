// Libraries that only some image formats need are opened when the first such file is read
// rather than linked, since loading them costs every process at start. Inside a struct,
// ICONWRIGHT_LAZY_LIBRARY(Type, soname, LIST) declares a pointer named after each function
// that LIST(X) lists as X(name), and a constructor that opens the library and looks them all
// up; `loaded` holds when every one was found. The library stays open for the life of the
// process, as a linked one would.
#pragma once

#include <dlfcn.h>

#define ICONWRIGHT_LAZY_POINTER(name) decltype(&::name) name = nullptr;
#define ICONWRIGHT_LAZY_LOOKUP(name)                                   \
  name = reinterpret_cast<decltype(&::name)>(dlsym(library, #name)); \
  found = found && name != nullptr;
#define ICONWRIGHT_LAZY_LIBRARY(Type, soname, LIST)                   \
  LIST(ICONWRIGHT_LAZY_POINTER)                                       \
  bool loaded = false;                                                \
  Type() {                                                            \
    void* library = dlopen(soname, RTLD_NOW | RTLD_LOCAL);            \
    if (library == nullptr) return;                                   \
    bool found = true;                                                \
    LIST(ICONWRIGHT_LAZY_LOOKUP)                                      \
    loaded = found;                                                   \
  }
