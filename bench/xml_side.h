// The same content in pugixml: an element an object, a property an attribute or an element.
#pragma once

#include <pugixml.hpp>
#include <string>

#include "bench/content.h"

namespace vndoc6::bench {

// Attributes make the smaller and quicker file. Elements are what most XML formats have, and what
// the library's own file has as well: every value a node of its own.
enum class XmlForm { kAttributes, kElements };

void BuildXml(const Content<std::string>& content, XmlForm form, pugi::xml_document& document);
Content<std::string> ReadXml(const pugi::xml_document& document, XmlForm form);
// As ChangeDocument.
void ChangeXml(pugi::xml_document& document, XmlForm form);
std::string XmlBytes(const pugi::xml_document& document);

}  // namespace vndoc6::bench
