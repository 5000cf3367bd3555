// Flate (zlib format, as /FlateDecode reads it) for the content streams and
// the image data of the document.
#pragma once

#include <cstddef>
#include <string>

namespace kelps2pdf {

// Compresses size bytes into out (replacing what it held).
void deflateInto(const unsigned char* data, std::size_t size, std::string& out);

// The name of the compressor the program was built with, for --version.
const char* deflateLibrary();

} // namespace kelps2pdf
