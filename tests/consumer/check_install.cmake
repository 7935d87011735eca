# Run by CTest: installs the build into a scratch prefix, then builds and runs the consumer project against it through
# find_package(ooxml CONFIG) and through pkg-config; the installed ooxml-dump must run without LD_LIBRARY_PATH from a
# copy of the prefix in another folder; the examples, built against the prefix, must print examples/expected.
# Arguments (-D): BUILD_DIR, SOURCE_DIR (this folder), WORK_DIR, EXAMPLES_DIR, SAMPLES_DIR.
# run([MATCH regex] command...): the command must succeed (and its output match); the output goes to last_output.
function(run)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "MATCH" "")
  execute_process(COMMAND ${arg_UNPARSED_ARGUMENTS} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0 OR (DEFINED arg_MATCH AND NOT out MATCHES "${arg_MATCH}"))
    message(FATAL_ERROR "failed (${status}) or no match of \"${arg_MATCH}\": ${arg_UNPARSED_ARGUMENTS}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
set(required include/ooxml/all.h include/ooxml/ooxml.h include/ooxml/opc/package.h include/ooxml/spreadsheetml/sml.h
             lib/cmake/ooxml/ooxmlConfig.cmake lib/pkgconfig/ooxml.pc)
list(TRANSFORM required PREPEND ${prefix}/)
run(${CMAKE_COMMAND} -E md5sum ${required}) # fails on a file that is not installed

# find_package(ooxml CONFIG)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/cmake-build -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake-build)
run(MATCH "2 entries, first override /word/document.xml" ${WORK_DIR}/cmake-build/consumer)

# pkg-config; it gives no run path: this program alone is told where the libraries are.
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
  run(${PKG_CONFIG} --cflags --libs ooxml)
  separate_arguments(flags UNIX_COMMAND "${last_output}")
  run(c++ -std=c++17 ${SOURCE_DIR}/main.cpp -o ${WORK_DIR}/pc-consumer ${flags})
  run(MATCH "2 entries, first override /word/document.xml"
      ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${WORK_DIR}/pc-consumer)
endif()

# The installed ooxml-dump finds its libraries by itself, also once the prefix is moved: a copy elsewhere, run
# without LD_LIBRARY_PATH, must load the libraries of the copy (ldd shows which), not of the first prefix.
set(moved ${WORK_DIR}/moved/elsewhere)
file(COPY ${prefix}/ DESTINATION ${moved})
find_program(LDD ldd)
if(LDD)
  run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${LDD} ${moved}/bin/ooxml-dump)
  foreach(library libooxml-opc libooxml-traversal libooxml)
    string(REGEX MATCH "${library}\\.so[^\n]*" line "${last_output}")
    string(FIND "${line}" "=> ${moved}/" at)
    if(at EQUAL -1)
      message(FATAL_ERROR "the moved ooxml-dump does not load ${library} of its own prefix:\n${last_output}")
    endif()
  endforeach()
endif()
run(MATCH "/xl/worksheets/sheet1.xml"
    ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${moved}/bin/ooxml-dump ${SAMPLES_DIR}/sample.xlsx)

# The examples, against the installed packages only: program|sample|arguments...|expected output.
run(${CMAKE_COMMAND} -S ${EXAMPLES_DIR} -B ${WORK_DIR}/examples-build -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/examples-build)
foreach(case "xlsx2csv|sample.xlsx|xlsx2csv.txt" "xlsx2csv|sample.xlsx|Notes|xlsx2csv-notes.txt"
              "docx2txt|sample.docx|docx2txt.txt" "pptx-outline|sample.pptx|pptx-outline.txt")
  string(REPLACE "|" ";" arguments "${case}")
  list(POP_FRONT arguments program file)
  list(POP_BACK arguments expected_file)
  run(${WORK_DIR}/examples-build/${program} ${SAMPLES_DIR}/${file} ${arguments})
  file(READ ${EXAMPLES_DIR}/expected/${expected_file} expected)
  if(NOT last_output STREQUAL expected)
    message(FATAL_ERROR "${program} ${file} ${arguments}: not as expected/${expected_file}:\n${last_output}")
  endif()
endforeach()
# A bad input is one line on stderr naming the file, and exit status 1.
execute_process(COMMAND ${WORK_DIR}/examples-build/docx2txt ${SAMPLES_DIR}/no-such.docx
                RESULT_VARIABLE status ERROR_VARIABLE err)
if(NOT status EQUAL 1 OR NOT err MATCHES "no-such.docx: no such file")
  message(FATAL_ERROR "docx2txt on a missing file: status ${status}, ${err}")
endif()
message(STATUS "examples build against the installed packages and match their expected output")
