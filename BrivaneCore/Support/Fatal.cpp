#include "BrivaneCore/Support/Fatal.h"

#include <cstdlib>
#include <iostream>

namespace brivane {

void fatal(std::string_view sentence) {
  std::cerr << "Brivane: fatal: " << sentence << std::endl;
  std::abort();
}

}  // namespace brivane
