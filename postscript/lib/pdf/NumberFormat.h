#pragma once

#include <cstddef>

// The room formatNumber needs: the sign, the 309 digits of the largest double
// and the NUL.
constexpr std::size_t numberTextSize = 312;

// The one format of every number written to page content, with its rounding:
// 0 decimals from 10000 up (untrimmed), 1 from 1000, 3 from 10, 4 from 1, 5
// below; trailing zeros and a bare "." go, and "-0" is "0". The band is chosen
// by the value before rounding, so 9999.96 prints "10000". Writes at most
// numberTextSize bytes, NUL included, and returns the length.
std::size_t formatNumber(double value, char* at);
