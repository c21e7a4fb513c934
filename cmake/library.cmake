add_library(zemtime
    Zem/Os/ZemTime.cpp
    Zem/Os/ZemTimeEmitInline.cpp
    Zem/Os/ZemTimeGregorian.cpp
    Zem/Os/ZemTimeGregorianFields.cpp
    Zem/Os/ZemTimePrintCompact.cpp
    Zem/Os/ZemTimeRangeSet.cpp
    Zem/Os/ZemTimeRangeVector.cpp
    Zem/Os/ZemTimeText.cpp
    Zem/Os/ZemTimeZone.cpp
    Zem/Os/ZemTimeZoneFile.cpp
    Zem/Os/ZemTimeZoneRule.cpp
    Zem/Utils/ZemAllocator.cpp
    Zem/Utils/ZemStdCLib.cpp)
add_library(ZemTime::zemtime ALIAS zemtime)

# macOS has the two functions itself.
if(NOT APPLE)
    target_sources(zemtime PRIVATE Zem/Os/SysDep/ZemHostClockPosix.cpp)
endif()

set_source_files_properties(Zem/Os/ZemTimeEmitInline.cpp PROPERTIES
    SKIP_UNITY_BUILD_INCLUSION ON)

# No exceptions and no C++ runtime: a C program links the library with nothing else.
# Calls within the library may be inlined in a shared library too. Sections: a program linked with
# --gc-sections takes from the static library what it calls.
target_compile_options(zemtime PRIVATE -ffunction-sections -fdata-sections
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-semantic-interposition>)
set_target_properties(zemtime PROPERTIES
    CXX_STANDARD 17
    CXX_STANDARD_REQUIRED ON
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    LINKER_LANGUAGE C
    DEBUG_POSTFIX d
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
target_include_directories(zemtime PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
get_target_property(type zemtime TYPE)
if(type STREQUAL SHARED_LIBRARY)
    target_compile_definitions(zemtime PUBLIC ZEM_SHARED)
    # UTC records point at a text of the library: it stays where it is after dlclose.
    if(CMAKE_SYSTEM_NAME STREQUAL Linux)
        target_link_options(zemtime PRIVATE LINKER:-z,nodelete)
    endif()
endif()
if(ZEMTIME_LIBC_CALENDAR)
    target_compile_definitions(zemtime PRIVATE ZEMTIME_LIBC_CALENDAR)
endif()
