#include <cstdio>

#include "automation/error.h"

int main() {
  const vndoc6::automation::Error error(vndoc6::automation::kTypeMismatch);
  std::puts(error.what());
  return error.number() == vndoc6::automation::kTypeMismatch ? 0 : 1;
}
