# What every target of the project shares: standard, output folders, warnings, sanitizers, hardening.
# Everything hangs on the targets, so that a project that takes this one in is left alone.

add_library(qv1k_settings INTERFACE)
target_compile_features(qv1k_settings INTERFACE cxx_std_20)
target_include_directories(qv1k_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(qv1k_settings INTERFACE QT_NO_CAST_TO_ASCII)

# Pixel arithmetic is bit-exact: no fused multiply-add in place of a product and a sum.
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(qv1k_settings INTERFACE -ffp-contract=off)
elseif(MSVC)
  target_compile_options(qv1k_settings INTERFACE /utf-8 /fp:precise)
endif()

if(QV1K_SANITIZE)
  target_compile_options(qv1k_settings INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                 -fno-omit-frame-pointer)
  target_link_options(qv1k_settings INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(qv1k_settings INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(QV1K_SANITIZE_THREADS)
  target_compile_options(qv1k_settings INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(qv1k_settings INTERFACE -fsanitize=thread)
endif()
if(QV1K_COVERAGE) # which qv1k_target() lets the program's sources be compiled for
  target_link_options(qv1k_settings INTERFACE --coverage)
endif()

# What stops a program that writes past its end. The sanitizers see more, and the checks of the C library would keep some
# of it from them; MinGW's are a library of their own, which the program would have to bring along.
set(QV1K_HARDENED OFF)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang" AND CMAKE_SYSTEM_NAME STREQUAL "Linux"
   AND NOT QV1K_SANITIZE AND NOT QV1K_SANITIZE_THREADS)
  set(QV1K_HARDENED ON)
  set(optimised $<NOT:$<CONFIG:Debug>>)
  target_compile_options(
    qv1k_settings INTERFACE $<${optimised}:-fstack-protector-strong> $<${optimised}:-U_FORTIFY_SOURCE>
                            $<${optimised}:-D_FORTIFY_SOURCE=2>)
  target_link_options(qv1k_settings INTERFACE $<${optimised}:LINKER:-z,relro,-z,now>)
endif()

# Libraries tell the fuzzer which of their branches an input took; assertions of Qt's headers hold.
if(QV1K_FUZZ)
  target_compile_options(qv1k_settings INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(qv1k_settings INTERFACE -fsanitize=fuzzer-no-link)
  target_compile_definitions(qv1k_settings INTERFACE QT_FORCE_ASSERTS)
endif()

add_library(qv1k_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(qv1k_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast
                                                 -Woverloaded-virtual -Wconversion -Wsign-conversion)
  if(QV1K_WARNINGS_AS_ERRORS)
    target_compile_options(qv1k_warnings INTERFACE -Werror)
  endif()
elseif(MSVC)
  target_compile_options(qv1k_warnings INTERFACE /W4)
  if(QV1K_WARNINGS_AS_ERRORS)
    target_compile_options(qv1k_warnings INTERFACE /WX)
  endif()
endif()

# Executables land in build/<preset>/bin, shared libraries in build/<preset>/lib.
function(qv1k_target target)
  get_target_property(type ${target} TYPE)
  target_link_libraries(${target} PRIVATE qv1k_warnings)
  if(QV1K_COVERAGE AND NOT CMAKE_CURRENT_SOURCE_DIR MATCHES "^${PROJECT_SOURCE_DIR}/(tests|bench)")
    target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)
  endif()
  if(type STREQUAL "STATIC_LIBRARY")
    target_link_libraries(${target} PUBLIC qv1k_settings)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  else()
    target_link_libraries(${target} PRIVATE qv1k_settings)
  endif()
  set_target_properties(
    ${target}
    PROPERTIES CXX_EXTENSIONS OFF
               RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin
               LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib
               ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
endfunction()
