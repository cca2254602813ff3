# The SIMD targets that the kernels are compiled for, by Highway's own switches. Which one runs is decided at run time.
set(KIPCC_TARGETS "" CACHE STRING
  "SIMD targets, of EMU128, SSE2, SSSE3, SSE4, AVX2, AVX3_DL and NEON, and a fallback; empty means all that pay")
set(known SSE2 SSSE3 SSE4 AVX2 AVX3_DL NEON)
foreach(target IN LISTS KIPCC_TARGETS)
  if(NOT target IN_LIST known AND NOT target STREQUAL EMU128)
    message(FATAL_ERROR "KIPCC_TARGETS: ${target} is none of ${known}")
  endif()
endforeach()

# AVX-512 is worth its own kernels where bytes can be permuted across a whole vector (VBMI) and summed in one step
# (VNNI): from Ice Lake and Zen 4 on. Processors with less of it run AVX2, and those with more have nothing more that is
# used here: they run the same kernels. Vectors without a length at compile time (SVE, RVV) cannot be members.
set(disabled "HWY_AVX3|(HWY_AVX3_DL-1)|HWY_SVE|HWY_SVE2|HWY_SVE_256|HWY_SVE2_128|HWY_RVV")
if(KIPCC_TARGETS)
  foreach(target IN LISTS known)
    if(NOT target IN_LIST KIPCC_TARGETS AND (NOT target STREQUAL SSE2 OR hwy_VERSION VERSION_GREATER_EQUAL 1.0.4))
      string(APPEND disabled "|HWY_${target}")
    endif()
  endforeach()
endif()

set(KIPCC_TARGET_DEFINITIONS
  HWY_WANT_AVX3_DL HWY_DISABLED_TARGETS=\(${disabled}\)
  # The fallback where Highway has no SIMD target for the baseline: the portable 128-bit emulation, the same vector code
  # without a scalar twin. Highway leaves it out for compilers whose vectoriser breaks it, which is off.
  HWY_BROKEN_EMU128=0)
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "86")
  # Highway calls AVX2 broken in 32 bits as some compilers refuse it; those that are supported here do not. AVX-512 it
  # calls broken rightly: the intrinsics for 64-bit masks and integers are missing.
  list(APPEND KIPCC_TARGET_DEFINITIONS HWY_BROKEN_TARGETS=\(HWY_AVX3|\(HWY_AVX3-1\)\))
endif()
