# What a Windows machine gets: the component `server`, which `cpack` puts into one archive for each
# bitness. The DLL lies at its root, beside the manifest that refers to it.

# The README's script as a file of its own. Sets `result` to its path.
function(vndoc6_readme_script result)
  set(readme ${PROJECT_SOURCE_DIR}/README.md)
  set(script ${PROJECT_BINARY_DIR}/order.vbs)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${readme})
  file(READ ${readme} text)
  if(NOT text MATCHES "<!-- example: vbs -->\n```vb\n([^`]+)```")
    message(FATAL_ERROR "README.md has no '<!-- example: vbs -->' followed by a script")
  endif()
  file(CONFIGURE OUTPUT ${script} CONTENT "${CMAKE_MATCH_1}" @ONLY NEWLINE_STYLE DOS)
  set(${result} ${script} PARENT_SCOPE)
endfunction()

vndoc6_readme_script(readme_script)
install(
  FILES $<TARGET_FILE:vndoc6_dll> ${PROJECT_SOURCE_DIR}/idl/VNDoc6.manifest
        ${PROJECT_SOURCE_DIR}/idl/VNDoc6.idl ${VNDOC6_TLB} ${VNDOC6_HEADER}
        ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        ${PROJECT_SOURCE_DIR}/SECURITY.md ${PROJECT_SOURCE_DIR}/CONTRIBUTING.md
  DESTINATION . COMPONENT server)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION . COMPONENT server
        FILES_MATCHING PATTERN "*.md")
install(FILES ${readme_script} ${PROJECT_SOURCE_DIR}/hosts/demo/demo.vbs
              ${PROJECT_SOURCE_DIR}/examples/tour.vbs ${PROJECT_SOURCE_DIR}/examples/tour.js
        DESTINATION examples COMPONENT server)

if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(CPACK_SYSTEM_NAME win64)
else()
  set(CPACK_SYSTEM_NAME win32)
endif()
set(CPACK_GENERATOR ZIP)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_COMPONENTS_ALL server)
include(CPack)
