# The command, from its command line to its output and exit status.
if(TARGET zemtime_command)
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
    add_test(NAME tool
        COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_LIST_DIR}/tool_test.py
            $<TARGET_FILE:zemtime_command> ${PROJECT_VERSION})
endif()
