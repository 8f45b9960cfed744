#include <iostream>
#include <string>
#include <vector>

#include "host/command.h"
#include "platform/win32/text.h"
#ifdef QUILLET_SELF_TEST
#include "tests/windows/self_test.h"
#endif

int wmain(int argc, wchar_t** argv) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) arguments.push_back(quillet::Utf8(argv[i]));
#ifdef QUILLET_SELF_TEST
  if (arguments.size() == 1 && arguments[0] == "--self-test")
    return quillet::RunSelfTest(std::cout);
#endif
  return quillet::RunCommand(arguments, std::cin, std::cout, std::cerr);
}
