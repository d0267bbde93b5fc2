# What `cmake --install` and `cpack` take: the component Runtime has what a finished program or Qt Designer needs,
# Development the rest, and SceneEditor the example of that name, if it is built. All paths in installed files are
# relative, so the prefix can be moved.
include(CMakePackageConfigHelpers)

# Debian looks for libraries below its architecture's name, whatever the prefix. With the same folder in every installation
# of this system a package needs no build of its own.
if(NOT DEFINED CMAKE_INSTALL_LIBDIR AND EXISTS /etc/debian_version AND CMAKE_LIBRARY_ARCHITECTURE)
    set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE PATH "Libraries, relative to the prefix")
endif()
include(GNUInstallDirs)
if(CMAKE_INSTALL_DOCDIR STREQUAL "${CMAKE_INSTALL_DATAROOTDIR}/doc/${PROJECT_NAME}")
    set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/orvekqtwidgets)
endif()
set(ORVEK_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/qt5/plugins CACHE PATH
    "What goes into QT_PLUGIN_PATH, relative to the prefix; the link for Qt Designer comes into designer/ below it")

# Private headers reach an installed tree only by mistake: the targets name the public ones.
set(_libraries OrvekQtWidgets)
set(_headers_of_OrvekQtWidgets Orvek/PlugIns/Qt/OrvekQtWidgets)
if(TARGET OrvekQtHost)
    list(APPEND _libraries OrvekQtHost)
    set(_headers_of_OrvekQtHost Orvek/Host)
endif()
foreach(_library IN LISTS _libraries)
    install(TARGETS ${_library} EXPORT OrvekQtWidgetsTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
        PUBLIC_HEADER DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${_headers_of_${_library}} COMPONENT Development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endforeach()
install(DIRECTORY Orvek/Base Orvek/CrossPlatform
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Orvek COMPONENT Development FILES_MATCHING PATTERN *.h)

if(WIN32)
    install(FILES $<TARGET_FILE:OrvekQtWidgets> DESTINATION ${ORVEK_PLUGIN_DIR}/designer COMPONENT Runtime)
else()
    # It leads to the name that carries the major version, as the bare one comes with the development files. Nothing else
    # may lie in that folder: Designer loads every library that it finds there.
    set(_prefix ${CMAKE_SHARED_LIBRARY_PREFIX}OrvekQtWidgets)
    if(APPLE)
        set(_soname ${_prefix}.${PROJECT_VERSION_MAJOR}${CMAKE_SHARED_LIBRARY_SUFFIX})
    else()
        set(_soname ${_prefix}${CMAKE_SHARED_LIBRARY_SUFFIX}.${PROJECT_VERSION_MAJOR})
    endif()
    set(_link ${PROJECT_BINARY_DIR}/installed/designer/${_prefix}${CMAKE_SHARED_LIBRARY_SUFFIX})
    get_filename_component(_plugin_dir ${ORVEK_PLUGIN_DIR} ABSOLUTE BASE_DIR ${CMAKE_INSTALL_PREFIX})
    file(RELATIVE_PATH _target ${_plugin_dir}/designer ${CMAKE_INSTALL_FULL_LIBDIR}/${_soname})
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/installed/designer)
    file(CREATE_LINK ${_target} ${_link} SYMBOLIC)
    install(FILES ${_link} DESTINATION ${ORVEK_PLUGIN_DIR}/designer COMPONENT Runtime)
endif()

# Documentation and translations, as far as this build has them. The pages come from the target docs; the pictures lie
# where README.md looks for them, and so does what it links to.
install(FILES CHANGELOG.md CONTRIBUTING.md README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development OPTIONAL)
install(DIRECTORY docs/images DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT Development)
install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development OPTIONAL
    FILES_MATCHING PATTERN *.html PATTERN *.css PATTERN *.png PATTERN *.qch)
install(DIRECTORY ${PROJECT_BINARY_DIR}/translations/ DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/orvekqtwidgets/translations
    COMPONENT Runtime OPTIONAL FILES_MATCHING PATTERN orvekqtwidgets_*.qm PATTERN orvekqthost_*.qm)

# find_package(OrvekQtWidgets)
set(_config ${CMAKE_INSTALL_LIBDIR}/cmake/OrvekQtWidgets)
configure_package_config_file(cmake/OrvekQtWidgetsConfig.cmake.in ${PROJECT_BINARY_DIR}/installed/OrvekQtWidgetsConfig.cmake
    INSTALL_DESTINATION ${_config} PATH_VARS ORVEK_PLUGIN_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/installed/OrvekQtWidgetsConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(EXPORT OrvekQtWidgetsTargets NAMESPACE OrvekQtWidgets:: DESTINATION ${_config} COMPONENT Development)
install(FILES
    ${PROJECT_BINARY_DIR}/installed/OrvekQtWidgetsConfig.cmake
    ${PROJECT_BINARY_DIR}/installed/OrvekQtWidgetsConfigVersion.cmake
    DESTINATION ${_config} COMPONENT Development)

# pkg-config
file(RELATIVE_PATH _pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" _pc_prefix ${_pc_prefix})
foreach(_library IN LISTS _libraries)
    string(TOLOWER ${_library} _name)
    configure_file(cmake/${_name}.pc.in ${PROJECT_BINARY_DIR}/installed/${_name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/installed/${_name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
endforeach()

include(cmake/OrvekPackage.cmake)
