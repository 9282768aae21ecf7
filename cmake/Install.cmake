# What a host gets: the library, its headers under nomareditor/, the files it reads at run time, a CMake package and a
# pkg-config file. Included by src/CMakeLists.txt behind the target NomarEditor; NOMAR_PUBLIC_HEADERS names the headers,
# relative to src/.

include(CMakePackageConfigHelpers)

# Under src/ a header is named by its room, in a host's include path there are no rooms: "room/Name.h" becomes
# <nomareditor/Name.h>. The copies serve the hosts in this tree too, so that they can include what an installed host can
# include and nothing more. They are made when the tree is configured, which happens again when one changes.
set(public_include_dir ${PROJECT_BINARY_DIR}/include)
set(public_names)
foreach(header IN LISTS NOMAR_PUBLIC_HEADERS)
    get_filename_component(name ${header} NAME)
    list(APPEND public_names ${name})
endforeach()
set(public_headers)
foreach(header IN LISTS NOMAR_PUBLIC_HEADERS)
    set(from ${PROJECT_SOURCE_DIR}/src/${header})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${from})
    file(READ ${from} text)
    string(REGEX MATCHALL "#include \"[^\"]+\"" includes "${text}")
    foreach(include IN LISTS includes)
        string(REGEX REPLACE ".*\"([^\"]+)\"" "\\1" path "${include}")
        get_filename_component(name ${path} NAME)
        if(NOT name IN_LIST public_names)
            message(FATAL_ERROR "${header} is installed, but it includes \"${path}\", which is not "
                "in NOMAR_PUBLIC_HEADERS")
        endif()
        string(REPLACE "${include}" "#include <nomareditor/${name}>" text "${text}")
    endforeach()
    get_filename_component(name ${header} NAME)
    file(GENERATE OUTPUT ${public_include_dir}/nomareditor/${name} CONTENT "${text}")
    list(APPEND public_headers ${public_include_dir}/nomareditor/${name})
endforeach()

set(NOMAR_DATA_DIR ${CMAKE_INSTALL_DATADIR}/nomareditor)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/NomarEditor)

# Before 1.0 each minor version may break the hosts of the last: a program asks for the one that it was linked with, as
# the CMake package does below.
set(so_version ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION_MAJOR EQUAL 0)
    string(APPEND so_version .${PROJECT_VERSION_MINOR})
endif()
set_target_properties(NomarEditor PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${so_version})
target_include_directories(NomarEditor INTERFACE
    $<BUILD_INTERFACE:${public_include_dir}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(NomarEditor INTERFACE cxx_std_20)

install(TARGETS NomarEditor EXPORT NomarEditorTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nomareditor)
# Built beside the executables, where a host finds it that sets no directory. res/ installs its pictures itself.
install(DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/nmeditor DESTINATION ${NOMAR_DATA_DIR})

install(EXPORT NomarEditorTargets NAMESPACE NomarEditor:: DESTINATION ${package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/NomarEditorConfig.cmake.in
    ${PROJECT_BINARY_DIR}/NomarEditorConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    PATH_VARS NOMAR_DATA_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/NomarEditorConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/NomarEditorConfig.cmake
    ${PROJECT_BINARY_DIR}/NomarEditorConfigVersion.cmake
    DESTINATION ${package_dir})

# The prefix of the pkg-config file is told relative to its own place, so that an installed tree may be moved.
file(RELATIVE_PATH pc_to_prefix
    /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" pc_to_prefix "${pc_to_prefix}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/nomareditor.pc.in
    ${PROJECT_BINARY_DIR}/nomareditor.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/nomareditor.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
