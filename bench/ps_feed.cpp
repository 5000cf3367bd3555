// Feeds a PostScript file through the conversion face in pieces, as a host
// does, and fails when a piece fails: the library side of compare_gs.py.
#include "kelumpd64/conversion.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: ps_feed FILE [PIECE_BYTES]\n");
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "ps_feed: cannot read %s\n", argv[1]);
        return 2;
    }
    std::string text;
    in.seekg(0, std::ios::end);
    text.resize(static_cast<std::size_t>(in.tellg()));
    in.seekg(0);
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    const std::size_t piece = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 64 << 10;
    if (piece == 0) return 2;
    const float identity[6] = {1, 0, 0, 1, 0, 0};
    PSHandle handle = PSOpen(identity);
    if (!handle) return 1;
    auto* data = reinterpret_cast<const unsigned char*>(text.data());
    for (std::size_t at = 0; at < text.size(); at += piece) {
        uint32_t length = static_cast<uint32_t>(std::min(piece, text.size() - at));
        if (!PSConvertToPdf(handle, data + at, &length)) {
            std::fprintf(stderr, "ps_feed: %s", PSGetErrorStr(handle));
            PSClose(handle);
            return 1;
        }
    }
    PSClose(handle);
    return 0;
}
