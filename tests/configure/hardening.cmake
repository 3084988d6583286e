# Looks into a built program or library for what stops it when it writes past an end.
#   cmake -DREADELF=... -DFILE=... -P hardening.cmake
execute_process(
  COMMAND ${READELF} --wide --file-header --dynamic --program-headers --dyn-syms ${FILE}
  OUTPUT_VARIABLE told
  COMMAND_ERROR_IS_FATAL ANY)

function(expect pattern meaning)
  if(NOT told MATCHES "${pattern}")
    message(SEND_ERROR "${FILE} has no ${meaning}: nothing like ${pattern}")
  endif()
endfunction()

expect("Type: +DYN" "address of its own at each start")
expect("GNU_RELRO" "table of addresses that becomes read-only")
expect("BIND_NOW|Flags:[^\n]* NOW" "binding of all calls at its start, before that table becomes read-only")
expect("UND __stack_chk_fail" "guard of its stack")
