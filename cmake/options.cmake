# What every target is compiled with.
add_library(quillet_options INTERFACE)
target_compile_options(quillet_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  # Results are bit-exact: no fused multiply-add where the source has none.
  -ffp-contract=off)

# 80-bit intermediates would change results.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86)$")
  target_compile_options(quillet_options INTERFACE -msse2 -mfpmath=sse)
endif()

if(WIN32)
  # Nothing to ship beside the system's own libraries.
  target_link_options(quillet_options INTERFACE -static)
  # 32-bit callers keep the stack aligned to 4 bytes only, vector code needs 16.
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^i[3-6]86$")
    target_compile_options(quillet_options INTERFACE -mstackrealign)
  endif()
endif()

set(QUILLET_SANITIZE "" CACHE STRING "Sanitizers for every target, as in address,undefined")
if(QUILLET_SANITIZE)
  target_compile_options(quillet_options INTERFACE
    -fsanitize=${QUILLET_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
    # The instrumentation hides from the compiler that an optional's value is read only where it is
    # set. The builds without it keep the warning.
    -Wno-maybe-uninitialized)
  target_link_options(quillet_options INTERFACE -fsanitize=${QUILLET_SANITIZE})
endif()

# A file whose name ends in _avx2.cpp is compiled for that instruction set, and called only where the
# processor has it.
function(quillet_vector_sources)
  foreach(source ${ARGN})
    if(source MATCHES "_avx2\\.cpp$" AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86|x86)$")
      # On 64-bit Windows the compiler cannot align its own stack to 32 bytes, yet uses moves that ask
      # for it (GCC bug 54412): the assembler turns them into moves that do not.
      set_source_files_properties(${source} PROPERTIES
        COMPILE_OPTIONS "-mavx2;$<$<BOOL:${WIN32}>:-Wa,-muse-unaligned-vector-move>")
    endif()
  endforeach()
endfunction()
