# What every target of the project is compiled with.
add_library(pixmora_options INTERFACE)
target_compile_options(pixmora_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor)
# g++ 12 sees overlaps in its own std::string's concatenations that aren't there.
target_compile_options(pixmora_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(PIXMORA_WERROR)
  target_compile_options(pixmora_options INTERFACE -Werror)
endif()
if(PIXMORA_SANITIZE)
  target_compile_options(pixmora_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                   -fno-omit-frame-pointer)
  target_link_options(pixmora_options INTERFACE -fsanitize=address,undefined)
endif()
if(PIXMORA_FUZZ)
  target_compile_options(pixmora_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(PIXMORA_COVERAGE)
  target_compile_options(pixmora_options INTERFACE --coverage)
  target_link_options(pixmora_options INTERFACE --coverage)
endif()
target_compile_definitions(
  pixmora_options INTERFACE QT_NO_KEYWORDS PIXMORA_VERSION_MAJOR=${PROJECT_VERSION_MAJOR}
                            PIXMORA_VERSION_MINOR=${PROJECT_VERSION_MINOR}
                            PIXMORA_VERSION_REVISION=${PROJECT_VERSION_PATCH})
target_include_directories(pixmora_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
