// The library's side of the benchmarks.
#pragma once

#include <cstddef>
#include <string>

#include "bench/content.h"
#include "vndoc6/document/document.h"

namespace vndoc6::bench {

// A document with this content, every property put through the published members.
automation::Ref<vnDocument> BuildDocument(const Content<Text>& content);

// Reads every property of every step, figure, task, link and line, fonts included. Gives a number
// that depends on all of them.
size_t ReadDocument(vnDocument& document);

// Changes a text of every step, task and link, and a number of every figure and line.
void ChangeDocument(vnDocument& document);

// The bytes that a save writes.
std::string DocumentBytes(vnDocument& document);

// The characters of the keys and values in a document's text, without what holds them together:
// what a file can't do without.
size_t OwnCharacters(const std::string& bytes);

}  // namespace vndoc6::bench
