# The C++ headers in one program whose sources are of different language versions, with exceptions
# and without: linked in both orders, and not optimised, so that the linker chooses among the bodies
# of inline functions.
set(units)
function(zemtime_add_unit name standard number)
    add_library(face_${name} OBJECT face_unit.cpp)
    set_target_properties(face_${name} PROPERTIES CXX_STANDARD ${standard})
    target_compile_definitions(face_${name} PRIVATE UNIT=Unit${name} NUMBER=${number})
    target_compile_options(face_${name} PRIVATE -O0 ${ARGN})
    target_link_libraries(face_${name} PRIVATE ZemTime::zemtime )
    set(units ${units} $<TARGET_OBJECTS:face_${name}> PARENT_SCOPE)
endfunction()
zemtime_add_unit(17WithoutExceptions 17 0 -fno-exceptions)
zemtime_add_unit(17 17 1)
zemtime_add_unit(20 20 2)
zemtime_add_unit(20WithoutExceptions 20 3 -fno-exceptions -DOWN_OPERATORS)
zemtime_add_unit(23 23 4)

find_package(Threads REQUIRED)
foreach(order forward backward)
    add_executable(face_${order} face_main.cpp ${units})
    set_target_properties(face_${order} PROPERTIES CXX_STANDARD 17)
    target_link_libraries(face_${order} PRIVATE ZemTime::zemtime  Threads::Threads)
    add_test(NAME face_${order} COMMAND face_${order})
    # A wait that goes wrong is one for ever.
    set_tests_properties(face_${order} PROPERTIES TIMEOUT 60)
    list(REVERSE units)
endforeach()

find_package(fmt REQUIRED)
zemtime_add_test(test_face test_face.cpp)
target_link_libraries(test_face PRIVATE fmt::fmt-header-only)
