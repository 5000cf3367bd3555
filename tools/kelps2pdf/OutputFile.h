// The PDF goes to a temporary file beside its destination and takes the
// destination's name only when complete: a failed or interrupted run leaves
// no partial PDF and leaves an existing file as it was.
#pragma once

#include <cstdio>
#include <string>

namespace kelps2pdf {

class OutputFile {
public:
    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile(); // discards a file not committed

    // Creates the temporary file for path ("-": standard output, through a
    // file in the temporary folder). False with the reason in error.
    bool open(const std::string& path, std::string& error);
    std::FILE* stream() const { return file_; }
    // Closes the file and gives it its name (or copies it to standard output).
    bool commit(std::string& error);
    void discard();

private:
    std::string path_, temporary_;
    std::FILE* file_ = nullptr;
};

// Standard input and output carry bytes, not text, on every system.
void useBinaryStandardStreams();

// The reason of the last failed C library call, as text.
std::string lastErrorText();

} // namespace kelps2pdf
