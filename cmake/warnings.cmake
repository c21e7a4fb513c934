# The warnings of the project's own builds: of everything in it, and of nothing that links it.
add_compile_options(
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wundef -Wcast-qual
    -Wcast-align -Wwrite-strings -Wformat=2 -Wnull-dereference -Werror
    "$<$<COMPILE_LANGUAGE:C>:-Wmissing-prototypes;-Wstrict-prototypes>"
    "$<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor;-Woverloaded-virtual;-Wmissing-declarations>")
