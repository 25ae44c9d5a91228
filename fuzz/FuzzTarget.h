// What every fuzz target offers to libFuzzer, and to the test that replays old findings.
#pragma once

#include <cstddef>
#include <cstdint>

/// Tries one input. Returns 0; anything but an error that the tried code promises ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
