#include "content/salvage.h"

#include <utility>

#include "content/salvage_reader.h"

namespace vndoc6 {

Salvaged Salvage(std::string bytes) {
  const salvage::DamagedFile file(std::move(bytes));
  Salvaged salvaged;
  salvage::Node document = salvage::ReadDocument(file, salvaged.damages);
  salvaged.text = salvage::WriteDocument(document, salvaged.damages);
  if (salvaged.damages.size() > Salvaged::kMostDamages) {
    salvaged.damages_not_listed = salvaged.damages.size() - Salvaged::kMostDamages;
    salvaged.damages.resize(Salvaged::kMostDamages);
  }
  return salvaged;
}

}  // namespace vndoc6
