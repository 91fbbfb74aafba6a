# Language level, warnings and optimisation, for every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)

add_compile_options(-Wall -Wextra -Wpedantic
  "$<$<NOT:$<CONFIG:Debug>>:-ffunction-sections;-fdata-sections>")
# Relocations in their short form are a tenth of their size, and are read by every start.
add_link_options(-Wl,--as-needed "$<$<NOT:$<CONFIG:Debug>>:-Wl,--gc-sections;-Wl,-z,pack-relative-relocs>")

add_compile_definitions(
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_FOREACH
  QT_NO_KEYWORDS
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 reports coroutine frames and Qt's inlined containers under these two without cause.
  add_compile_options(-Wno-maybe-uninitialized -Wno-array-bounds)
  # Of several sources in one it takes all but the file that includes them for headers, where what is local would be a fault.
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
    # WORKAROUND: clang 14 cannot place this check into a coroutine's parts.
    add_compile_options(-fno-sanitize=function)
  endif()
endif()

# What stays in memory all day is made small before it is made fast: what takes time there is never the code.
function(tralio_make_small target)
  target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-Os>)
endfunction()
