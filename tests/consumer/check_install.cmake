# Run by CTest: installs the build into a scratch prefix, then builds and runs
# the consumer project against it, once through find_package(ooxml CONFIG)
# and once through pkg-config.
#   cmake -DBUILD_DIR=... -DSOURCE_DIR=... -DWORK_DIR=... -P check_install.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "failed (${status}): ${ARGN}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
foreach(required include/ooxml/all.h include/ooxml/ooxml.h include/ooxml/opc/package.h
                 include/ooxml/spreadsheetml/sml.h lib/cmake/ooxml/ooxmlConfig.cmake lib/pkgconfig/ooxml.pc)
  if(NOT EXISTS ${prefix}/${required})
    message(FATAL_ERROR "not installed: ${required}")
  endif()
endforeach()

# find_package(ooxml CONFIG)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/cmake-build -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake-build)
run(${WORK_DIR}/cmake-build/consumer)
if(NOT last_output MATCHES "2 entries, first override /word/document.xml")
  message(FATAL_ERROR "unexpected output: ${last_output}")
endif()

# pkg-config
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
  run(${PKG_CONFIG} --cflags --libs ooxml)
  string(STRIP "${last_output}" flags)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(c++ -std=c++17 ${SOURCE_DIR}/main.cpp -o ${WORK_DIR}/pc-consumer ${flags})
  set(ENV{LD_LIBRARY_PATH} ${prefix}/lib)
  run(${WORK_DIR}/pc-consumer)
endif()
message(STATUS "installed package builds and runs: ${last_output}")
