# Install rules, the CMake package config (find_package(OrvCoordSys)), the Debian package
# (cpack -G DEB) and the build tree's mirror of the install layout. See docs/embedding.md.
include(CMakePackageConfigHelpers)

set(ORV_LIBRARIES OrvBaseR OrvStrings OrvPlatform OrvGeoWizard)
set(ORV_PROGRAMS orv-coordsys terrameter orv-geodb)

# Libraries find each other beside themselves; programs find them in the install prefix.
set_target_properties(${ORV_LIBRARIES} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    INSTALL_RPATH "$ORIGIN")
set_target_properties(${ORV_PROGRAMS} PROPERTIES INSTALL_RPATH "$ORIGIN/${ORV_BIN_TO_LIB}")

install(TARGETS ${ORV_LIBRARIES} EXPORT OrvCoordSysTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS ${ORV_PROGRAMS} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${ORV_SYSTEM_DB} DESTINATION ${ORV_INSTALL_DATADIR})

# Headers keep the paths they have in the tree, below include/orv: the geodetic library's
# from geodb/ (api/, engine/, store/, util/), the others under their folder names.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/geodb/ DESTINATION ${ORV_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
foreach(dir platform resources wizard pages editor dialogs selection)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${dir}/ DESTINATION ${ORV_INSTALL_INCLUDEDIR}/${dir}
        FILES_MATCHING PATTERN "*.h")
endforeach()

install(EXPORT OrvCoordSysTargets NAMESPACE OrvCoordSys:: DESTINATION ${ORV_INSTALL_CMAKEDIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/OrvCoordSysConfig.cmake.in
    ${CMAKE_BINARY_DIR}/OrvCoordSysConfig.cmake INSTALL_DESTINATION ${ORV_INSTALL_CMAKEDIR})
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/OrvCoordSysConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/OrvCoordSysConfig.cmake
    ${CMAKE_BINARY_DIR}/OrvCoordSysConfigVersion.cmake DESTINATION ${ORV_INSTALL_CMAKEDIR})

# The build tree as an install prefix: the libraries are built into lib/ (top CMakeLists.txt),
# the system database and the calculator are linked into share/orv/ and bin/, so the library
# finds them by the same relative paths as when installed. The links may dangle until the
# files are built.
get_target_property(orv_calculator_dir terrameter BINARY_DIR)
get_target_property(orv_calculator_output terrameter RUNTIME_OUTPUT_DIRECTORY)
if(orv_calculator_output)
    set(orv_calculator_dir ${orv_calculator_output})
endif()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/${ORV_INSTALL_DATADIR}
    ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_BINDIR})
file(CREATE_LINK ${ORV_SYSTEM_DB} ${CMAKE_BINARY_DIR}/${ORV_INSTALL_DATADIR}/orv-system.db
    SYMBOLIC)
file(CREATE_LINK ${orv_calculator_dir}/terrameter ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_BINDIR}/terrameter
    SYMBOLIC)

# cpack -G DEB: one package with the programs, the libraries, the system database, the headers
# and the package config.
set(CPACK_PACKAGE_NAME orv-coordsys)
set(CPACK_PACKAGE_VENDOR "ORV")
set(CPACK_PACKAGE_CONTACT "ORV developers <orv@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Coordinate-system dialogs for marine survey software (library, programs, EPSG data)")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Without the debugging information of a RelWithDebInfo build (a tenth of the size).
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
# Loaded at run time, so no library names them: the SQLite driver of Qt SQL and PROJ's
# registry (proj.db).
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, proj-data")
include(CPack)
