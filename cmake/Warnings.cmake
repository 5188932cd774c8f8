# What every target of ours is compiled with: strict warnings, the strict subset of Qt, the sanitizer if any.
add_library(navorin_strict INTERFACE)
target_compile_definitions(navorin_strict INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER)
target_compile_options(navorin_strict INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wno-missing-field-initializers)
if(NAVORIN_WERROR)
    target_compile_options(navorin_strict INTERFACE -Werror)
endif()

if(NAVORIN_SANITIZER STREQUAL "address")
    # vptr checks read `this` before a resumed coroutine may
    add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(NAVORIN_SANITIZER STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(NAVORIN_SANITIZER)
    message(FATAL_ERROR "NAVORIN_SANITIZER must be empty, address or thread")
endif()

# Third-party headers are not ours to mend.
foreach(target PkgConfig::GSTREAMER)
    get_target_property(dirs ${target} INTERFACE_INCLUDE_DIRECTORIES)
    set_target_properties(${target} PROPERTIES INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${dirs}")
endforeach()
