// What crosses the border of the two libraries.
//
// Everything is compiled with hidden visibility; a class, template or function that outside code
// uses carries KOV_EXPORT. Classes that are thrown, and templates with static members, are exported
// whole, so that their type information is one and the same in every library of a process.
#pragma once

#define KOV_EXPORT __attribute__((visibility("default")))
