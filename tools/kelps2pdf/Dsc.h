// What the host reads from a job's comments: page sizes, the title, and the
// printer-control lines that wrap a job.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelps2pdf {

struct Box {
    double llx = 0, lly = 0, urx = 0, ury = 0;
    bool operator==(const Box&) const = default;
};

inline constexpr Box a4Paper{0, 0, 595.28, 841.89};

// The text after "%%Key:" (trimmed; empty for a bare "%%Key") when line is
// that comment, else nullopt.
std::optional<std::string_view> commentValue(std::string_view line, std::string_view key);

// "llx lly urx ury" of %%BoundingBox and %%PageBoundingBox; nullopt for
// "(atend)", an empty or inverted box, or anything else.
std::optional<Box> parseBoundingBox(std::string_view value);

// The first medium of %%DocumentMedia: "name width height weight colour type".
std::optional<Box> parseDocumentMedia(std::string_view value);

// "/PageSize [width height]" in a line of PostScript (a setpagedevice request).
std::optional<Box> findPageSize(std::string_view line);

// --paper: a name (a3 a4 a5 b5 letter legal tabloid, any case) or WIDTHxHEIGHT in points.
std::optional<Box> paperByName(std::string_view name);

// A DSC text value: "(text with \) escapes)" unwrapped, else the value itself.
std::string dscText(std::string_view value);

// The printer-control wrapping of a job as drivers send it: Ctrl-D bytes and
// the Universal Exit Language sequence at a line start are dropped; a line of
// Printer Job Language (after a UEL, or "@PJL" itself) is dropped whole.
// Returns what is left of the line to run; empty when nothing is.
std::string_view stripJobControl(std::string_view line);

} // namespace kelps2pdf
