#include <iostream>

#include "tsql/reference_page.h"

// Writes docs/tsql.md to standard output.
int main() {
  std::cout << tolvane::tsql::referencePage();
  return std::cout.good() ? 0 : 1;
}
