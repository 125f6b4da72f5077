#pragma once

/// Marks what libvelmoran_scene shows to its users; everything else is hidden.
#if defined(_WIN32)
#if defined(VELMORAN_SCENE_BUILDING)
#define VELMORAN_SCENE_EXPORT __declspec(dllexport)
#else
#define VELMORAN_SCENE_EXPORT __declspec(dllimport)
#endif
#else
#define VELMORAN_SCENE_EXPORT __attribute__((visibility("default")))
#endif
