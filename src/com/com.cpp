#include "com/com.h"

#include <new>

namespace vndoc6::com {

BSTR MakeBstr(TextView text) {
  BSTR string = TryMakeBstr(text);
  if (string == nullptr) throw std::bad_alloc();
  return string;
}

}  // namespace vndoc6::com
