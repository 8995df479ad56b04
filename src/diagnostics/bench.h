// The bench: fixed-depth searches of a fixed set of positions, whose total node count is the
// engine's signature. It is the same on every run and every machine, so a change to it shows
// that the search changed.
#pragma once

#include <cstdint>
#include <ostream>
#include <string_view>

namespace torvy {

// The first command-line argument, or a command, that runs the bench.
constexpr std::string_view BenchCommand = "bench";
// Five to eight seconds on the development machine, which shares two cores with other work.
constexpr unsigned DefaultBenchDepth = 10;
// Fixed, whatever the options say: the table sizes change the node count.
constexpr std::uint32_t BenchTtHashSizeMB = 16;
constexpr std::uint32_t BenchPawnHashSizeMB = 8;

// A line per position, then "Nodes searched: N" and "Nodes/second: X"; answers N.
std::uint64_t runBench(std::ostream& out, unsigned depth);

// "bench [DEPTH]", without a depth at the default one. Answers the exit status: 1, after an
// "Error" line, for a depth that is not a positive number.
int runBenchCommand(std::ostream& out, std::string_view depthText);

}  // namespace torvy
