# Tests of the examples.

# The small ones: each opens its window, saves a picture of it and ends by itself. Qt names what is wrong with a widget,
# a connection or a painter in a warning.
foreach(example IN ITEMS OneEditor PanelFromCode ObjectInspector DerivedEditor TrivialEngine)
    if(TARGET ${example})
        add_test(NAME example_${example} COMMAND ${example} --screenshot ${CMAKE_CURRENT_BINARY_DIR}/${example}.png)
        set_tests_properties(example_${example} PROPERTIES TIMEOUT 60
            FAIL_REGULAR_EXPRESSION "QMetaObject;QObject;QLayout;QWidget;QPainter;QBackingStore;QPixmap"
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;${ORVEK_SANITIZER_OPTIONS}")
    endif()
endforeach()

if(TARGET TrivialEngine)
    orvek_add_test(tst_trivialengine XCB)
endif()

if(TARGET DerivedEditor)
    orvek_add_test(tst_derivededitor)
    # Not part of a library, so their meta-objects are made once more.
    target_sources(tst_derivededitor PRIVATE
        ${PROJECT_SOURCE_DIR}/examples/DerivedEditor/AngleEdit.h
        ${PROJECT_SOURCE_DIR}/examples/DerivedEditor/PercentEdit.h)
endif()

if(TARGET SceneEditorUi)
    orvek_add_test(tst_looks LIBS SceneEditorUi)
    if(TARGET orvek_translations)
        add_dependencies(tst_looks orvek_translations)
    endif()
endif()

# Every text in the sources is in the .ts files, and translated.
if(TARGET Qt5::lupdate)
    add_test(NAME translations_complete COMMAND ${CMAKE_COMMAND} -DLUPDATE=$<TARGET_FILE:Qt5::lupdate>
        -DSOURCE=${PROJECT_SOURCE_DIR} -DCHECK=${CMAKE_CURRENT_BINARY_DIR}/translations
        -P ${PROJECT_SOURCE_DIR}/cmake/UpdateTranslations.cmake)
    set_tests_properties(translations_complete PROPERTIES TIMEOUT 120)
endif()
