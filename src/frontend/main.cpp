#include <cstdio>
#include <iostream>

#include "diagnostics/bench.h"
#include "frontend/wb_engine.h"

int main(int argc, char** argv) {
  // The bench ignores the configuration file and prints no banner, so it runs before either.
  if (argc > 1 && argv[1] == torvy::BenchCommand) return torvy::runBenchCommand(std::cout, argc > 2 ? argv[2] : "");
  torvy::WBEngine engine(std::cout, stdin);
  return engine.run(argc, argv);
}
