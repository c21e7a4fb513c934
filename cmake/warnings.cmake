# The warnings of the project's own builds. Linked by every target of the project, by nobody else.
add_library(zemtime_warnings INTERFACE)
target_compile_options(zemtime_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wundef -Wcast-qual
    -Wcast-align -Wwrite-strings -Wformat=2 -Wnull-dereference -Werror
    $<$<COMPILE_LANGUAGE:C>:-Wmissing-prototypes -Wstrict-prototypes>
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wmissing-declarations>)
