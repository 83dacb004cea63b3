#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// What the fuzz targets share. A target is one function that takes any bytes and may neither crash
// nor hang nor break what it checks with Require. The fuzzer links it with its own main; the
// ordinary build links it with replay.cpp, which feeds it the files of its corpus.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tessary::fuzz {

// Ends the process, which the fuzzer counts as a crash, unless `holds`.
void Require(bool holds, const char* what);

std::string Bytes(const std::uint8_t* data, std::size_t size);

// The input cut at its lines "%%" into `count` texts; the last takes the rest, those that are
// missing are empty.
std::vector<std::string> Parts(const std::uint8_t* data, std::size_t size, std::size_t count);

// The lines of a file of these bytes as UTF-8, without line ends.
std::vector<std::string> FileLines(const std::string& bytes);

}  // namespace tessary::fuzz
