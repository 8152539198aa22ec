# A layer is a static library that sees its own headers and those of the layers below it, so that
# an include that points up does not compile.

add_library(quiladmin_options INTERFACE)
# Reports name files as they stand in the sources, wherever these were built.
target_compile_options(quiladmin_options INTERFACE -Wall -Wextra
  -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=)
# What is overwritten by a fault shall be noticed, and not be jumped through.
target_compile_options(quiladmin_options INTERFACE
  "$<$<CONFIG:RelWithDebInfo,Release>:-D_FORTIFY_SOURCE=2;-fstack-protector-strong>")
target_link_options(quiladmin_options INTERFACE -Wl,-z,relro,-z,now)
if(QUILADMIN_SANITIZE)
  # What a test itself does wrong shows anyway: its own sources do without the checks and the
  # details for debuggers that take more than a third of the time to compile them.
  set(of_test "$<BOOL:$<TARGET_PROPERTY:QUILADMIN_IS_TEST>>")
  target_compile_options(quiladmin_options INTERFACE
    -fsanitize=address -fno-omit-frame-pointer
    "$<$<NOT:${of_test}>:-fsanitize=undefined;-fno-sanitize-recover=undefined>"
    "$<${of_test}:-g1>")
  target_link_options(quiladmin_options INTERFACE -fsanitize=address,undefined)
endif()

# quiladmin_layer(NAME [layers below...]): the library of the current folder and the folders in it, from
# all their sources.
function(quiladmin_layer name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  file(GLOB_RECURSE folders LIST_DIRECTORIES true ${CMAKE_CURRENT_SOURCE_DIR}/*)
  list(FILTER folders EXCLUDE REGEX "\\.[a-z]+$")
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${folders})
  target_link_libraries(${name} PUBLIC quiladmin_options ${ARGN})
endfunction()
