# Warnings as errors for all of our code; sanitizers for every target when asked.
add_compile_options(-Wall -Wextra -Werror -Wshadow -Wnon-virtual-dtor)

if(SPATIOLA_SANITIZE)
  add_compile_options(-fsanitize=${SPATIOLA_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${SPATIOLA_SANITIZE})
endif()

# 32-bit or 64-bit build of the same sources.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(SPATIOLA_WIDTH 32)
else()
  set(SPATIOLA_WIDTH 64)
endif()
