zemtime_add_test(test_range test_range.cpp)
zemtime_add_test(test_vector test_vector.cpp)

add_executable(iterators iterators.c)
target_link_libraries(iterators PRIVATE ZemTime::zemtime zemtime_warnings)
add_test(NAME iterators COMMAND iterators)
