# The packages navorin and navorin-demo for Debian, which cpack makes. What the program is linked with is read off it;
# what it only loads is what scripts/dependencies.sh has this machine install.
set(dependency_lists ${CMAKE_SOURCE_DIR}/scripts/dependencies.sh)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${dependency_lists})

# navorin_package_list(<variable> <array>): an array of dependencies.sh in the form of a control field.
function(navorin_package_list variable array)
    execute_process(COMMAND bash -euc ". '${dependency_lists}'; printf '%s, ' \"\${${array}[@]}\""
        OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE ", $" "" names "${names}")
    set(${variable} "${names}" PARENT_SCOPE)
endfunction()
navorin_package_list(loaded run_packages)
navorin_package_list(advertisements ad_packages)
navorin_package_list(desktop desktop_packages)

set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR Navorin)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
# Whoever installs below DESTDIR is told the path that it will have in the end.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL navorin demo)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Navorin <packages@navorin.example>" CACHE STRING
    "Name and address of who answers for the Debian packages")

# Each package begins its description with a line of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_COMPONENT_NAVORIN_DESCRIPTION "Persian internet radio and music client
Plays the stations of one radio service, live ones and lists of songs, with
a five-band equaliser, lyrics in time, story videos, song recognition,
playlists and tracks kept for playing without a network. Right to left, dark.")
set(CPACK_DEBIAN_NAVORIN_PACKAGE_NAME navorin)
set(CPACK_DEBIAN_NAVORIN_PACKAGE_DEPENDS "${loaded}")
set(CPACK_DEBIAN_NAVORIN_PACKAGE_RECOMMENDS "${desktop}")
set(CPACK_DEBIAN_NAVORIN_PACKAGE_SUGGESTS "navorin-demo")
# The web engine is large, and loaded only where there are advertisements.
if(NAVORIN_AD_HOST AND NAVORIN_AD_SITE)
    string(APPEND CPACK_DEBIAN_NAVORIN_PACKAGE_RECOMMENDS ", ${advertisements}")
else()
    string(APPEND CPACK_DEBIAN_NAVORIN_PACKAGE_SUGGESTS ", ${advertisements}")
endif()

set(CPACK_COMPONENT_DEMO_DESCRIPTION "made-up radio service for Navorin
A backend that synthesises its own music and draws its own covers. The command
\"navorin --demo\" starts it; it needs no network.")
set(CPACK_DEBIAN_DEMO_PACKAGE_NAME navorin-demo)
# It loads some of the GStreamer plugins that navorin brings, and is of no use without it.
set(CPACK_DEBIAN_DEMO_PACKAGE_DEPENDS "navorin (= ${PROJECT_VERSION})")

include(CPack)
