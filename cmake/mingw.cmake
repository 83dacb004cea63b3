# What the two Windows toolchains have in common; MINGW_TRIPLET names the target. Everything is
# linked in, so that the products need no DLLs beside them, and nothing of the building machine,
# neither times nor paths, gets into them.
set(CMAKE_SYSTEM_NAME Windows)

# The compilers with POSIX threads by name: which variant the plain names mean can be changed.
set(CMAKE_C_COMPILER ${MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${MINGW_TRIPLET}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR wine)

foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_INIT "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
endforeach()
foreach(kind EXE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT
      "-static -static-libgcc -static-libstdc++ -s -Wl,--no-insert-timestamp")
endforeach()
# The texts of resources are UTF-8.
set(CMAKE_RC_FLAGS_INIT "-c 65001")
