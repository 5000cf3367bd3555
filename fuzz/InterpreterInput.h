#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// One input of the interpreter fuzz target: its first byte says where the
// rest is cut into the two buffers that one handle runs. Each call may take
// at most stepLimit objects, so that an endless program ends. Answers the
// error text of each call that failed.
std::vector<std::string> runInterpreterInput(const uint8_t* data, std::size_t size,
                                             uint64_t stepLimit);
