// The one macro of this library: it marks the names that the shared library shows.
// Define MORANDEL_STATIC to use the static library on Windows.

#pragma once

#if defined(_WIN32) && !defined(MORANDEL_STATIC)
#ifdef MORANDEL_BUILDING
#define MORANDEL_EXPORT __declspec(dllexport)
#else
#define MORANDEL_EXPORT __declspec(dllimport)
#endif
#elif defined(_WIN32)
#define MORANDEL_EXPORT
#else
#define MORANDEL_EXPORT [[gnu::visibility("default")]]
#endif
