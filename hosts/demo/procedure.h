// The procedure that the demo builds: the approval of a purchase, from the request to the archive.
#pragma once

#include "vndoc6/document/document.h"

namespace demo {

// Fills an empty document. `supplier_file` is the document that one step jumps to.
void BuildPurchaseApproval(vndoc6::vnDocument& document, const vndoc6::Text& supplier_file);

// Fills an empty document with the small procedure that purchase approval jumps to.
void BuildSupplierCheck(vndoc6::vnDocument& document);

}  // namespace demo
