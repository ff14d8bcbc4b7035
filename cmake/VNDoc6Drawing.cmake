# The drawing library: charts and reports, on the model's public classes.

# Gives C++ the files that a page carries along as they are: in one array of bytes each, since
# compilers limit string literals.
function(vndoc6_embed result namespace)
  set(output ${PROJECT_BINARY_DIR}/page_parts.cpp)
  set(script ${PROJECT_SOURCE_DIR}/cmake/embed_files.cmake)
  set(arguments)
  set(files)
  foreach(part IN LISTS ARGN)
    string(REGEX MATCH "^([^=]+)=(.+)$" whole ${part})
    list(APPEND arguments ${part})
    list(APPEND files ${CMAKE_MATCH_2})
  endforeach()
  add_custom_command(
    OUTPUT ${output}
    DEPENDS ${script} ${files}
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${output} -DNAMESPACE=${namespace} "-DPARTS=${arguments}" -P
            ${script}
    VERBATIM)
  set(${result} ${output} PARENT_SCOPE)
endfunction()

set(drawing_folder ${PROJECT_SOURCE_DIR}/drawing)
file(GLOB drawing_sources CONFIGURE_DEPENDS ${drawing_folder}/*.cpp ${drawing_folder}/layout/*.cpp)
list(FILTER drawing_sources EXCLUDE REGEX "_test\\.cpp$")
vndoc6_embed(page_parts vndoc6::drawing kPageStyle=${drawing_folder}/page.css
             kPageScript=${drawing_folder}/page.js kPrintScript=${drawing_folder}/print.js
             kSiteScript=${drawing_folder}/site.js)

add_library(vndoc6_drawing STATIC ${drawing_sources} ${page_parts})
add_library(vndoc6::drawing ALIAS vndoc6_drawing)
vndoc6_configure(vndoc6_drawing)
vndoc6_lint(vndoc6_drawing)
set_target_properties(vndoc6_drawing PROPERTIES EXPORT_NAME drawing POSITION_INDEPENDENT_CODE ON
                                                VERIFY_INTERFACE_HEADER_SETS ${PROJECT_IS_TOP_LEVEL})
target_sources(
  vndoc6_drawing PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/include
                        FILES ${PROJECT_SOURCE_DIR}/include/vndoc6/drawing.h)
target_link_libraries(vndoc6_drawing PUBLIC vndoc6)
