// murv/export.h - which symbols leave the shared library.
//
// The library is built with hidden visibility, so that only what carries MURV_API is its interface. Programs that link
// the static library define MURV_STATIC (the CMake target and the pkg-config file do it for them).
#ifndef MURV_EXPORT_H
#define MURV_EXPORT_H

#if defined(_WIN32) && !defined(MURV_STATIC)
#if defined(MURV_BUILDING)
#define MURV_API __declspec(dllexport)
#else
#define MURV_API __declspec(dllimport)
#endif
#elif defined(__GNUC__) || defined(__clang__)
#define MURV_API __attribute__((visibility("default")))
#else
#define MURV_API
#endif

#if defined(__GNUC__) || defined(__clang__)
#define MURV_PRINTF(textIndex, firstIndex) __attribute__((format(printf, textIndex, firstIndex)))
#else
#define MURV_PRINTF(textIndex, firstIndex)
#endif

#endif
