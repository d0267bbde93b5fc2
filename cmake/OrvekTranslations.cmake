# Compiles translations/*.ts into translations/ of the build, where the scene editor and the rules for installing look.
# Without Qt's linguist tools the texts stay English.
find_package(${ORVEK_QT} ${ORVEK_QT_MINIMUM} QUIET COMPONENTS LinguistTools)
if(${ORVEK_QT}LinguistTools_FOUND)
    file(GLOB _sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/translations/*.ts)
    set_source_files_properties(${_sources} PROPERTIES OUTPUT_LOCATION ${PROJECT_BINARY_DIR}/translations)
    # Unfinished texts are left out, or they would be empty.
    qt_add_translation(_compiled ${_sources} OPTIONS -nounfinished -silent)
    add_custom_target(orvek_translations ALL DEPENDS ${_compiled})
    # Where programs look in a build with several configurations.
    foreach(_output IN LISTS ORVEK_OUTPUTS)
        if(NOT _output STREQUAL PROJECT_BINARY_DIR AND NOT WIN32)
            file(MAKE_DIRECTORY ${_output})
            file(CREATE_LINK ../translations ${_output}/translations SYMBOLIC)
        endif()
    endforeach()

    # After a text has changed: updates the .ts files, to be translated there.
    set(_update ${CMAKE_COMMAND} -DLUPDATE=$<TARGET_FILE:${ORVEK_QT}::lupdate> -DSOURCE=${PROJECT_SOURCE_DIR}
        -P ${PROJECT_SOURCE_DIR}/cmake/UpdateTranslations.cmake)
    add_custom_target(orvek_update_translations COMMAND ${_update} VERBATIM)
endif()
