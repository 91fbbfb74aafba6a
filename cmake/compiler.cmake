# Language level, warnings and optimisation, for every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)

add_compile_options(-Wall -Wextra -Wpedantic
  "$<$<NOT:$<CONFIG:Debug>>:-ffunction-sections;-fdata-sections>")
# Packed relative relocations (DT_RELR) take a tenth of the space, and every start has to read them.
add_link_options(-Wl,--as-needed "$<$<NOT:$<CONFIG:Debug>>:-Wl,--gc-sections;-Wl,-z,pack-relative-relocs>")

add_compile_definitions(
  _FILE_OFFSET_BITS=64  # network file systems have numbers that a 32-bit stat() refuses
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_FOREACH
  QT_NO_KEYWORDS
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 warns of coroutine frames and of Qt's inlined containers under these two without cause.
  add_compile_options(-Wno-maybe-uninitialized -Wno-array-bounds)
  # In a unity build GCC takes every source except the including one for a header, where anonymous namespaces would be
  # a fault.
  if(CMAKE_UNITY_BUILD)
    add_compile_options(-Wno-subobject-linkage)
  endif()
endif()

if(TRALIO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(TRALIO_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # WORKAROUND: clang 14 cannot apply this check to the parts of a coroutine.
    add_compile_options(-fno-sanitize=function)
  endif()
endif()

# Code that stays in memory all day is optimised for size first: its time goes into waiting, not into computing.
function(tralio_make_small target)
  target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-Os>)
endfunction()
