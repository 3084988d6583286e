# What is not run on Windows: not-on-windows.txt, a pattern of tests' names and the reason a line.
#   include(LeftOut.cmake)                                   gives the functions below
#   cmake -DBUILD=<folder of a build> -P LeftOut.cmake       says how many tests are left out and why; it is an error
#                                                            when a pattern meets no test
# Such a test stays in CTest's list as a disabled one.

set(QV1K_LEFT_OUT_LIST ${CMAKE_CURRENT_LIST_DIR}/not-on-windows.txt)
set(QV1K_LEFT_OUT_SCRIPT ${CMAKE_CURRENT_LIST_FILE})

# The patterns and, under the same indices, their reasons. Brackets and semicolons would be read as those of lists.
function(qv1k_read_left_out patterns reasons)
  file(STRINGS ${QV1K_LEFT_OUT_LIST} lines REGEX "^[^#]")
  foreach(line IN LISTS lines)
    if(line MATCHES "[][;]" OR NOT line MATCHES "^([^ ].*[^ ]) +:: +([^ ].*)$")
      message(FATAL_ERROR "${QV1K_LEFT_OUT_LIST}: no \"pattern :: reason\": ${line}")
    endif()
    list(APPEND found "${CMAKE_MATCH_1}")
    list(APPEND why "${CMAKE_MATCH_2}")
  endforeach()
  set(${patterns} "${found}" PARENT_SCOPE)
  set(${reasons} "${why}" PARENT_SCOPE)
endfunction()

# Disables those of the tests that the list names.
function(qv1k_leave_out)
  qv1k_read_left_out(patterns reasons)
  foreach(test IN LISTS ARGN)
    foreach(pattern IN LISTS patterns)
      if(test MATCHES "${pattern}")
        set_tests_properties("${test}" PROPERTIES DISABLED TRUE)
      endif()
    endforeach()
  endforeach()
endfunction()

# The same for the tests of a program, which are known when CTest reads them.
function(qv1k_leave_out_of program)
  if(NOT WIN32)
    return()
  endif()
  set(file ${CMAKE_CURRENT_BINARY_DIR}/${program}_left_out.cmake)
  file(WRITE ${file} "include(\"${QV1K_LEFT_OUT_SCRIPT}\")\nqv1k_leave_out(\${${program}_TESTS})\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${file})
endfunction()

# Tests that cannot be built for Windows. They stand in CTest's list all the same, and fail unless the list names them.
function(qv1k_not_for_windows)
  foreach(test IN LISTS ARGN)
    add_test(NAME "${test}" COMMAND ${CMAKE_COMMAND} -E false)
  endforeach()
  qv1k_leave_out(${ARGN})
endfunction()

# A test that holds the list against the tests of this build.
function(qv1k_check_left_out)
  if(NOT WIN32)
    return()
  endif()
  set(name "tests: what is left out on Windows is there to be left out")
  add_test(NAME "${name}" COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -P ${QV1K_LEFT_OUT_SCRIPT})
  set_tests_properties("${name}" PROPERTIES LABELS unit)
endfunction()

# The names of a build's tests, and those of them that are disabled.
function(qv1k_list_tests build all disabled)
  execute_process(
    COMMAND ctest --test-dir ${build} --show-only
    OUTPUT_VARIABLE output
    COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "Test +#[0-9]+: [^\n]*" lines "${output}")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^Test +#[0-9]+: " "" test "${line}")
    if(test MATCHES "^(.*) \\(Disabled\\)$")
      set(test "${CMAKE_MATCH_1}")
      list(APPEND off "${test}")
    endif()
    list(APPEND tests "${test}")
  endforeach()
  set(${all} "${tests}" PARENT_SCOPE)
  set(${disabled} "${off}" PARENT_SCOPE)
endfunction()

function(qv1k_report_left_out build)
  qv1k_read_left_out(patterns reasons)
  qv1k_list_tests(${build} all disabled)
  foreach(pattern reason IN ZIP_LISTS patterns reasons)
    set(met ${all})
    list(FILTER met INCLUDE REGEX "${pattern}")
    list(LENGTH met count)
    if(count EQUAL 0)
      message(SEND_ERROR "${QV1K_LEFT_OUT_LIST}: no test is named like this: ${pattern}")
    endif()
    list(REMOVE_ITEM disabled ${met})
    list(APPEND report "${count}: ${reason}")
    list(APPEND left_out ${met})
  endforeach()
  if(disabled)
    message(SEND_ERROR "disabled without a reason: ${disabled}")
  endif()
  list(REMOVE_DUPLICATES left_out)
  list(LENGTH left_out count)
  list(LENGTH all total)
  list(JOIN report "\n  " report)
  message(NOTICE "Left out on Windows are ${count} of ${total} tests:\n  ${report}")
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  qv1k_report_left_out(${BUILD})
endif()
