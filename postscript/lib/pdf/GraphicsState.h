#pragma once

#include <cstdint>
#include <string>

// The part of PostScript's graphics state that operators must answer from;
// the rest lives only in the PDF viewer's state, through the content written.
struct GraphicsState {
    explicit GraphicsState(const double defaultMatrix[6]) {
        for (int i = 0; i < 6; ++i)
            matrix[i] = defaultMatrix[i];
    }

    // In user space, as written: a change of matrix does not move it.
    double currentX = 0;
    double currentY = 0;
    double lineWidth = 0;
    double matrix[6];
    int32_t colorSpace = 0;
    std::string fontName = "Helvetica";
    double fontSize = 12;
    // An "m" has been written for the open subpath.
    bool pathStarted = false;
    // 0 RGB, 1 HSB, 2 CMYK, 3 gray: the model of the last colour operator.
    int32_t colorKind = 3;
    double color[4] = {0, 0, 0, 0};
};
