#pragma once

#include "core/PostscriptObject.h"

#include <cstdint>

// Negative, zero or positive. Knows integers (their difference, wrapping at
// 32 bits), reals, booleans (also against integers), and strings or names
// among themselves; anything else throws "Unsupported type comparison".
int32_t compareObjects(const PostscriptObject* a, const PostscriptObject* b);

// eq: null only equals null; dictionaries and arrays compare element-wise;
// the rest by compareObjects.
bool objectsEqual(const PostscriptObject* a, const PostscriptObject* b);
