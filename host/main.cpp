#include <iostream>
#include <string>
#include <vector>

#include "host/command.h"

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  return quillet::RunCommand(arguments, std::cin, std::cout, std::cerr);
}
