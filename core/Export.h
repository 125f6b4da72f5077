#pragma once

/// Marks what libvelmoran_core shows to its users; everything else is hidden.
#if defined(_WIN32)
#if defined(VELMORAN_CORE_BUILDING)
#define VELMORAN_CORE_EXPORT __declspec(dllexport)
#else
#define VELMORAN_CORE_EXPORT __declspec(dllimport)
#endif
#else
#define VELMORAN_CORE_EXPORT __attribute__((visibility("default")))
#endif
