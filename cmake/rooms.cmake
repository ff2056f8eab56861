# A room is a folder under src/ and the static library made of it.
#
# Each room has an include root of its own, a folder that holds nothing but a link to the
# room, so that "platform/child_process.h" can be found only by those that link the platform
# room. An include that goes upward therefore has nothing to find and does not compile.

# sorvik_room(<name> <folder> LINKS <targets...>)
#   name    the library becomes sorvik_<name>
#   folder  relative to src/; its own .h and .cpp files belong to the room, sub-folders do not
#   LINKS   what the room stands on, passed on to those that link the room
function(sorvik_room name folder)
  cmake_parse_arguments(ROOM "" "" "LINKS;PRIVATE_LINKS" ${ARGN})
  set(source_dir ${PROJECT_SOURCE_DIR}/src/${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${source_dir}/*.cpp ${source_dir}/*.h)
  set(target sorvik_${name})
  add_library(${target} STATIC ${sources})
  sorvik_include_root(${name} ${folder} root)
  target_include_directories(${target} PUBLIC ${root})
  target_link_libraries(${target} PUBLIC ${ROOM_LINKS} PRIVATE ${ROOM_PRIVATE_LINKS} sorvik_warnings)
  sorvik_check_headers(${name} ${folder} ${ROOM_PRIVATE_LINKS})
endfunction()

# Makes the include root of a room and gives its path in <out>.
function(sorvik_include_root name folder out)
  set(root ${PROJECT_BINARY_DIR}/include-roots/${name})
  get_filename_component(parent ${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${root}/${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${folder} ${root}/${folder} SYMBOLIC)
  set(${out} ${root} PARENT_SCOPE)
endfunction()

# Every header compiles alone: one translation unit a header, built by the target check_headers.
add_custom_target(check_headers)
function(sorvik_check_headers name folder) # further arguments: what the room stands on for itself alone
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/src/${folder}/*.h)
  set(units "")
  foreach(header IN LISTS headers)
    string(MAKE_C_IDENTIFIER ${header} unit)
    set(unit ${PROJECT_BINARY_DIR}/header-units/${unit}.cpp)
    file(CONFIGURE OUTPUT ${unit} CONTENT "#include \"${header}\"\n")
    list(APPEND units ${unit})
  endforeach()
  if(units)
    add_library(check_headers_${name} OBJECT EXCLUDE_FROM_ALL ${units})
    set_target_properties(check_headers_${name} PROPERTIES AUTOMOC OFF)
    target_link_libraries(check_headers_${name} PRIVATE sorvik_${name} ${ARGN} sorvik_warnings)
    add_dependencies(check_headers check_headers_${name})
  endif()
endfunction()

# sorvik_tests(<name> LINKS <targets...>): all .cpp files of the calling folder as one test
# program, each case a test of its own in ctest.
function(sorvik_tests name)
  cmake_parse_arguments(TESTS "" "" "LINKS;DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_executable(${name}_tests ${sources})
  target_link_libraries(${name}_tests PRIVATE ${TESTS_LINKS} sorvik_warnings)
  set_target_properties(${name}_tests PROPERTIES AUTOMOC OFF RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests/bin)
  target_compile_definitions(${name}_tests PRIVATE SORVIK_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  if(TESTS_DEPENDS)
    add_dependencies(${name}_tests ${TESTS_DEPENDS})
  endif()
  gtest_discover_tests(${name}_tests TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 240 ENVIRONMENT "SORVIK_BUNDLE=${SORVIK_BUNDLE_DIR};XDG_STATE_HOME=${PROJECT_BINARY_DIR}/tests/state")
endfunction()
