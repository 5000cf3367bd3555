// The program as a function, so that tests can run it without a process.
#pragma once

namespace kelps2pdf {

int runKelps2pdf(int argc, const char* const* argv);

} // namespace kelps2pdf
