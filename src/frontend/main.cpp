#include <cstdio>
#include <iostream>

#include "frontend/wb_engine.h"

int main(int argc, char** argv) {
  torvy::WBEngine engine(std::cout, stdin);
  return engine.run(argc, argv);
}
