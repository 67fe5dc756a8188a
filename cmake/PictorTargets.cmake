# One folder is one target: each function takes the sources of the folder it is called in.

add_library(pictor_flags INTERFACE)
target_compile_features(pictor_flags INTERFACE cxx_std_17)
target_compile_options(pictor_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
target_compile_definitions(pictor_flags INTERFACE QT_DEPRECATED_WARNINGS QT_NO_FOREACH)
if(PICTOR_SANITIZE)
  target_compile_options(pictor_flags INTERFACE -fsanitize=${PICTOR_SANITIZE}
                                                -fno-omit-frame-pointer -g1)
  target_link_options(pictor_flags INTERFACE -fsanitize=${PICTOR_SANITIZE})
endif()
if(PICTOR_COVERAGE)
  target_compile_options(pictor_flags INTERFACE --coverage)
  target_link_options(pictor_flags INTERFACE --coverage)
endif()

# Makes moc look at the whole list again when a file was added: by itself it only notices changes of
# files that it knows. Call with the target and its sources.
function(watch_source_list target)
  set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}_sources.txt)
  set(known "")
  if(EXISTS ${list})
    file(READ ${list} known)
  endif()
  if(NOT known STREQUAL "${ARGN}")
    file(WRITE ${list} "${ARGN}")
    file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
  endif()
endfunction()

# pictor_library(app DEPENDS Qt5::Core): the library pictor_app from this folder's sources.
function(pictor_library name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;EXCLUDE" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.ui *.qrc)
  foreach(file ${ARG_EXCLUDE})
    list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
  if(NOT sources)
    add_library(pictor_${name} INTERFACE)
    target_include_directories(pictor_${name} INTERFACE ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(pictor_${name} INTERFACE ${ARG_DEPENDS})
    return()
  endif()
  add_library(pictor_${name} STATIC ${sources})
  watch_source_list(pictor_${name} ${sources})
  target_include_directories(pictor_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(pictor_${name} PUBLIC ${ARG_DEPENDS} PRIVATE pictor_flags)
endfunction()

# pictor_test(imaging DEPENDS pictor_imaging): the GoogleTest program test_imaging.
function(pictor_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "DEPENDS;PROPERTIES" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
  endif()
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  add_executable(test_${name} ${sources})
  watch_source_list(test_${name} ${sources})
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}
                                                  ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE ${ARG_DEPENDS} test_support pictor_flags)
  if(PICTOR_SANITIZE) # what is tested stays fast; the tests themselves need not be
    target_compile_options(test_${name} PRIVATE -O0)
  endif()
  set_target_properties(test_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  gtest_discover_tests(test_${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT ${ARG_TIMEOUT} ${ARG_PROPERTIES})
endfunction()
