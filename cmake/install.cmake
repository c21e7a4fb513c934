include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The two kinds of the library, and a Debug beside a Release build, may share a prefix.
string(REPLACE _LIBRARY "" kind "${type}")
string(TOLOWER "${kind}" kind)
install(TARGETS zemtime EXPORT ZemTime-${kind}
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY Zem DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp"
    PATTERN Private EXCLUDE PATTERN ZemVector.hpp EXCLUDE)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZemTime)
install(EXPORT ZemTime-${kind} NAMESPACE ZemTime:: DESTINATION ${package_dir}
    COMPONENT development)
write_basic_package_version_file(ZemTimeConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES cmake/ZemTimeConfig.cmake ${PROJECT_BINARY_DIR}/ZemTimeConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT development)

# A file that knows where it is follows the prefix when that is moved; an absolute folder does not.
set(pc_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pc_prefix ${pc_dir} ${CMAKE_INSTALL_PREFIX})
set(pc_prefix "\${pcfiledir}/${pc_prefix}")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(pc_prefix ${CMAKE_INSTALL_PREFIX})
endif()
foreach(folder LIBDIR INCLUDEDIR)
    set(pc_${folder} "\${prefix}/${CMAKE_INSTALL_${folder}}")
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
        set(pc_${folder} "${CMAKE_INSTALL_${folder}}")
    endif()
endforeach()
set(pc_name zemtime)
if(CMAKE_BUILD_TYPE STREQUAL Debug)
    set(pc_name zemtimed)
endif()
configure_file(cmake/zemtime.pc.in ${pc_name}.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/${pc_name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/zemtime
    COMPONENT development)

# gdb loads a script of a library's name from its folder of such scripts.
install(FILES packaging/debugger/zemtime_gdb.py packaging/debugger/zemtime.natvis
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zemtime COMPONENT development)
if(kind STREQUAL shared)
    install(FILES packaging/debugger/zemtime_gdb.py RENAME $<TARGET_FILE_NAME:zemtime>-gdb.py
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}
        COMPONENT development)
endif()
