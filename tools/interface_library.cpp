// Writes the type library's text from the method table to standard output.
#include <iostream>

#include "catalogue/catalogue.h"
#include "typelib/interface_text.h"

int main() {
  std::cout << tolvane::typelib::interfaceText(tolvane::classes()) << std::flush;
  return std::cout ? 0 : 1;
}
