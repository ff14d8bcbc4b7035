# The COM door: VNDoc6.dll with its type library, and the tests of the door.

# widl turns the published contract into the type library that the DLL embeds as resource 1, and
# into the header that C++ hosts include. stdole2.tlb and the imported IDL files come from Wine's
# development files. Sets `VNDOC6_TLB` and `VNDOC6_HEADER`.
function(vndoc6_contract)
  set(idl ${PROJECT_SOURCE_DIR}/idl/VNDoc6.idl)
  set(tlb ${PROJECT_BINARY_DIR}/VNDoc6.tlb)
  set(header ${PROJECT_BINARY_DIR}/VNDoc6.h)
  file(GLOB wine_libraries /usr/lib/*/wine/x86_64-windows)
  find_program(VNDOC6_WIDL_PROGRAM NAMES ${VNDOC6_WIDL} widl REQUIRED)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(bits --win64)
  else()
    set(bits --win32)
  endif()
  list(TRANSFORM wine_libraries PREPEND -L)
  set(widl ${VNDOC6_WIDL_PROGRAM} ${bits} -I/usr/include/wine/wine/windows ${wine_libraries})
  add_custom_command(
    OUTPUT ${tlb} ${header}
    DEPENDS ${idl}
    COMMAND ${widl} -t -o ${tlb} ${idl}
    COMMAND ${widl} -h -o ${header} ${idl}
    COMMENT "Type library and header of the published contract"
    VERBATIM)
  set(VNDOC6_TLB ${tlb} PARENT_SCOPE)
  set(VNDOC6_HEADER ${header} PARENT_SCOPE)
endfunction()

# The resource script that embeds the type library, which lies in the build folder.
function(vndoc6_resources target)
  set(script ${PROJECT_SOURCE_DIR}/src/com/server/VNDoc6.rc)
  enable_language(RC)
  target_sources(${target} PRIVATE ${script})
  string(REPLACE "." "," version_numbers ${PROJECT_VERSION},0)
  set_source_files_properties(
    ${script} PROPERTIES
    OBJECT_DEPENDS ${VNDOC6_TLB}
    INCLUDE_DIRECTORIES ${PROJECT_BINARY_DIR}
    COMPILE_DEFINITIONS
    "VNDOC6_VERSION=${version_numbers};VNDOC6_VERSION_TEXT=${PROJECT_VERSION}")
endfunction()

# The door without its entry points is part of the library: the slots of the dual interfaces, which
# stand in the member tables, call it.
function(vndoc6_com_door)
  vndoc6_glob(sources "*.cpp" com)
  list(FILTER sources EXCLUDE REGEX "_test\\.cpp$")
  target_sources(vndoc6 PRIVATE ${sources})
  target_compile_definitions(vndoc6 PUBLIC UNICODE _UNICODE NOMINMAX)
  target_link_libraries(vndoc6 PUBLIC ole32 oleaut32 uuid gdi32 user32 advapi32 bcrypt)
endfunction()

function(vndoc6_dll)
  vndoc6_glob(sources "*.cpp" com/server)
  list(FILTER sources EXCLUDE REGEX "_test\\.cpp$")
  add_library(vndoc6_dll SHARED ${sources} ${PROJECT_SOURCE_DIR}/src/com/server/VNDoc6.def)
  vndoc6_configure(vndoc6_dll)
  vndoc6_inside(vndoc6_dll)
  set_target_properties(vndoc6_dll PROPERTIES OUTPUT_NAME VNDoc6 PREFIX "")
  target_link_libraries(vndoc6_dll PRIVATE vndoc6)
  vndoc6_resources(vndoc6_dll)
  add_custom_command(
    TARGET vndoc6_dll POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${PROJECT_SOURCE_DIR}/idl/VNDoc6.manifest
            $<TARGET_FILE_DIR:vndoc6_dll>
    VERBATIM)
endfunction()

# Tests of the door, run under Wine where there is no Windows.
function(vndoc6_windows_tests)
  vndoc6_glob(class_tests "*_test.cpp" com com/server)
  file(GLOB host_tests CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/windows/*.cpp)
  vndoc6_test_program(vndoc6_com_tests ${class_tests} ${host_tests})
  if(TARGET vndoc6_com_tests)
    add_dependencies(vndoc6_com_tests vndoc6_dll)
    target_link_libraries(vndoc6_com_tests PRIVATE version)
    target_include_directories(vndoc6_com_tests SYSTEM PRIVATE ${PROJECT_BINARY_DIR})
    set_source_files_properties(${PROJECT_SOURCE_DIR}/tests/windows/apartments_test.cpp
                                ${PROJECT_SOURCE_DIR}/tests/windows/early_bound_test.cpp
                                ${PROJECT_SOURCE_DIR}/tests/windows/endurance_test.cpp
                                PROPERTIES OBJECT_DEPENDS ${VNDOC6_HEADER})
  endif()
endfunction()

# Alone, because it replaces operator new: the door without the DLL.
function(vndoc6_windows_memory_tests)
  file(GLOB tests CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/windows/out_of_memory/*.cpp)
  vndoc6_test_program(vndoc6_com_memory_tests ${tests} ${VNDOC6_HEADER}
                      ${PROJECT_SOURCE_DIR}/tests/out_of_memory/shortage.cpp
                      ${PROJECT_SOURCE_DIR}/src/com/server/class_factory.cpp)
  if(TARGET vndoc6_com_memory_tests)
    target_include_directories(vndoc6_com_memory_tests SYSTEM PRIVATE ${PROJECT_BINARY_DIR})
  endif()
endfunction()

# `./dev bench windows`: what a call through the door costs.
function(vndoc6_windows_bench)
  vndoc6_program(vndoc6_door_bench ${PROJECT_SOURCE_DIR}/bench/windows/door_bench.cpp ${VNDOC6_HEADER})
  vndoc6_inside(vndoc6_door_bench)
  add_dependencies(vndoc6_door_bench vndoc6_dll)
  target_include_directories(vndoc6_door_bench SYSTEM PRIVATE ${PROJECT_BINARY_DIR})
endfunction()

vndoc6_com_door()
vndoc6_contract()
vndoc6_dll()
