# Installation: headers, libraries, layouts, manual, documentation, the CMake package and the pkg-config file.
#
# Both descriptions find everything relative to themselves, so an installed tree may be moved as a whole.
set(murv_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/murv)
set(murv_pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(
    TARGETS ${murv_targets}
    EXPORT murvTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(
    DIRECTORY ${PROJECT_SOURCE_DIR}/include/murv
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING
    PATTERN "*.h")
install(
    DIRECTORY ${PROJECT_SOURCE_DIR}/share/murv/layouts
    DESTINATION ${CMAKE_INSTALL_DATADIR}/murv
    FILES_MATCHING
    PATTERN "*.murv")

# Sections 3 and 5 of the manual; section 1 comes with the tool.
foreach(section IN ITEMS 3 5)
    install(
        DIRECTORY ${PROJECT_SOURCE_DIR}/docs/man/
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section}
        FILES_MATCHING
        PATTERN "*.${section}")
endforeach()

# The folders keep their places, so that links between pages lead somewhere.
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(
    DIRECTORY ${PROJECT_SOURCE_DIR}/docs
    DESTINATION ${CMAKE_INSTALL_DOCDIR}
    FILES_MATCHING
    PATTERN "*.md"
    PATTERN "*.svg"
    PATTERN man EXCLUDE)
install(
    DIRECTORY ${PROJECT_SOURCE_DIR}/examples
    DESTINATION ${CMAKE_INSTALL_DOCDIR}
    PATTERN CMakeLists.txt EXCLUDE
    PATTERN "*.cmake" EXCLUDE
    PATTERN "*.expected" EXCLUDE)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/editors DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(EXPORT murvTargets NAMESPACE murv:: DESTINATION ${murv_package_dir})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/murvConfig.cmake.in ${PROJECT_BINARY_DIR}/murvConfig.cmake
                              INSTALL_DESTINATION ${murv_package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/murvConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/murvConfig.cmake ${PROJECT_BINARY_DIR}/murvConfigVersion.cmake
        DESTINATION ${murv_package_dir})

# An absolute library directory cannot be relative to anything; the prefix is then written as it is.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    set(murv_pc_prefix "${CMAKE_INSTALL_PREFIX}")
    set(murv_pc_libdir "${CMAKE_INSTALL_FULL_LIBDIR}")
    set(murv_pc_includedir "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
else()
    file(RELATIVE_PATH murv_pc_up "/${murv_pc_dir}" "/")
    string(REGEX REPLACE "/$" "" murv_pc_up "${murv_pc_up}")
    set(murv_pc_prefix "\${pcfiledir}/${murv_pc_up}")
    set(murv_pc_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
    set(murv_pc_includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/murv.pc.in ${PROJECT_BINARY_DIR}/murv.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/murv.pc DESTINATION ${murv_pc_dir})
