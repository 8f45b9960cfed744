#include <iostream>
#include <string>
#include <vector>

#include "host/command.h"
#include "platform/win32/text.h"

int wmain(int argc, wchar_t** argv) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) arguments.push_back(quillet::Utf8(argv[i]));
  return quillet::RunCommand(arguments, std::cin, std::cout, std::cerr);
}
