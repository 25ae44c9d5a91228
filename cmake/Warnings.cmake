# What every target of ours is compiled with. Third-party headers come in as system headers.
add_library(pointloom_options INTERFACE)
target_compile_options(pointloom_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror
  -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast $<$<CXX_COMPILER_ID:GNU>:-Wuseless-cast>
  -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Wsuggest-override)
# GCC 12 takes the inactive alternative of a variant for uninitialised memory when it optimises.
target_compile_options(pointloom_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 takes joining a literal and a std::string for an overlapping copy (GCC bug 105651).
  target_compile_options(pointloom_options INTERFACE -Wno-restrict)
endif()
target_compile_definitions(pointloom_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
target_include_directories(pointloom_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

if(POINTLOOM_SANITIZE)
  add_compile_options(-fsanitize=${POINTLOOM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${POINTLOOM_SANITIZE})
  if(POINTLOOM_SANITIZE MATCHES fuzzer)
    # Calls at each comparison take a quarter of the time, and the mutators know the keys of what they change.
    add_compile_options(-fno-sanitize-coverage=trace-cmp)
  endif()
endif()
