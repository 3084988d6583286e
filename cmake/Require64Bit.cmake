# Refuses, with a sentence, what a 32-bit build would only show later as wrong pixels or as memory that runs out.
function(qv1k_require_64_bit)
  if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
    message(FATAL_ERROR "QV1K needs a compiler for 64 bits (this one's pointers have ${CMAKE_SIZEOF_VOID_P} bytes): pixel arithmetic is not exact in 32-bit floating-point registers, and waiting frames do not fit a 32-bit address space.")
  endif()
endfunction()
