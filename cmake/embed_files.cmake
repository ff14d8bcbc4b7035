# Writes OUTPUT, a source file that defines each of PARTS (name=file) as a std::string_view in
# NAMESPACE.
set(text "// Made by cmake/embed_files.cmake.\n#include <string_view>\n\nnamespace ${NAMESPACE} {\n")
foreach(part IN LISTS PARTS)
  string(REGEX MATCH "^([^=]+)=(.+)$" whole ${part})
  set(name ${CMAKE_MATCH_1})
  file(READ ${CMAKE_MATCH_2} bytes HEX)
  string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
  string(APPEND text "static constexpr char ${name}Bytes[] = {${bytes}};\n"
                     "extern const std::string_view ${name};\n"
                     "const std::string_view ${name}(${name}Bytes, sizeof ${name}Bytes);\n")
endforeach()
file(WRITE ${OUTPUT} "${text}}  // namespace ${NAMESPACE}\n")
