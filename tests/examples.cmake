# The small examples: each opens its window, saves a picture of it and ends by itself. Qt names what is wrong with a widget,
# a connection or a painter in a warning.
foreach(example IN ITEMS OneEditor PanelFromCode DerivedEditor TrivialEngine)
    if(TARGET ${example})
        add_test(NAME example_${example} COMMAND ${example} --screenshot ${CMAKE_CURRENT_BINARY_DIR}/${example}.png)
        set_tests_properties(example_${example} PROPERTIES TIMEOUT 60
            FAIL_REGULAR_EXPRESSION "QMetaObject;QObject;QLayout;QWidget;QPainter;QBackingStore;QPixmap"
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;${ORVEK_SANITIZER_OPTIONS}")
    endif()
endforeach()

if(TARGET DerivedEditor)
    orvek_add_test(tst_derivededitor)
    # Not part of a library, so their meta-objects are made once more.
    target_sources(tst_derivededitor PRIVATE
        ${PROJECT_SOURCE_DIR}/examples/DerivedEditor/AngleEdit.h
        ${PROJECT_SOURCE_DIR}/examples/DerivedEditor/PercentEdit.h)
endif()
