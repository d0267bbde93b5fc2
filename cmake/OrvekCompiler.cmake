# Settings that all targets of this project share, and no host that adds the project to its own build.
add_library(OrvekCompiler INTERFACE)
target_compile_definitions(OrvekCompiler INTERFACE
    QT_NO_FOREACH
    QT_DEPRECATED_WARNINGS
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
# What a file that looks for libraries calls its own folder.
set(ORVEK_ORIGIN "$ORIGIN")
if(APPLE)
    set(ORVEK_ORIGIN "@loader_path")
endif()
# The libraries cast dynamically, in the build of a host that does without, too.
set(ORVEK_WITH_RTTI -frtti)
if(MSVC)
    set(ORVEK_WITH_RTTI /GR)
    target_compile_options(OrvekCompiler INTERFACE /utf-8)
else()
    target_compile_options(OrvekCompiler INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
    # Qt's own macros of tests take no further argument.
    if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
        target_compile_options(OrvekCompiler INTERFACE -Wno-gnu-zero-variadic-macro-arguments)
    endif()
    if(ORVEK_WARNINGS_AS_ERRORS)
        target_compile_options(OrvekCompiler INTERFACE -Werror)
    endif()
endif()
if(ORVEK_SANITIZE)
    set(_sanitize -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
    target_compile_options(OrvekCompiler INTERFACE ${_sanitize} -fno-omit-frame-pointer)
    target_link_options(OrvekCompiler INTERFACE ${_sanitize})
endif()
