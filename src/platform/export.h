// How a function is made visible outside its shared library.
#pragma once

#ifdef _WIN32
#define AXLINK2_EXPORT __declspec(dllexport)
#else
#define AXLINK2_EXPORT __attribute__((visibility("default")))
#endif
