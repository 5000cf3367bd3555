#pragma once

#include <cmath>

struct Rgb {
    double r;
    double g;
    double b;
};

// HSB to RGB, which PDF lacks: sethsbcolor, currentgray and the images of an
// HSB colour need it. Components are taken as they come, unclamped.
inline Rgb hsbToRgb(double h, double s, double v) {
    if (s == 0) return {v, v, v};
    // Whole turns go. h - floor(h) is exactly what stepping by 1 into [0, 1)
    // gives, and it also ends for hues too large to step through. A hue that
    // is no finite number has no sector and counts as 0.
    h = std::isfinite(h) ? h - std::floor(h) : 0;
    const double x = h * 6;
    const int i = static_cast<int>(std::floor(x));
    const double f = x - i;
    const double p = (1 - s) * v;
    const double q = (1 - f * s) * v;
    const double t = (1 - (1 - f) * s) * v;
    switch (i) {
    case 1:
        return {q, v, p};
    case 2:
        return {p, v, t};
    case 3:
        return {p, q, v};
    case 4:
        return {t, p, v};
    case 5:
        return {v, p, q};
    default:
        // 0, and 6 where a hue just under a whole turn rounds up to it: f is
        // then 0, and the colour is that of hue 0.
        return {v, t, p};
    }
}
