# The version of KOVA is project(VERSION) alone, released on KOVA_RELEASE_DATE: this makes
# them a header (kova_version.h) for the programs, together with the desktop identity and
# where an installed program finds its read-only files. debian/changelog must carry the
# same version and date (the test PackageVersionMatchesTheProject).
set(KOVA_RELEASE_DATE "2026-11-23")

# The project's public identity. Placeholders on the reserved example.org domain until the
# project has a home of its own: the AppStream ID names the desktop entry, the icon and the
# metainfo, and the screenshot must be an https URL a software centre can fetch.
set(KOVA_APP_ID "org.example.kova" CACHE STRING "Reverse-DNS identity of the desktop program")
set(KOVA_HOMEPAGE "https://kova.example.org" CACHE STRING "The project's home page")
set(KOVA_SCREENSHOT_URL "${KOVA_HOMEPAGE}/images/main-window.png" CACHE STRING
    "Where docs/images/main-window.png is published")

file(RELATIVE_PATH KOVA_DATA_FROM_PROGRAM
     "${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}"
     "${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/kova")
configure_file("${CMAKE_CURRENT_LIST_DIR}/kova_version.h.in"
               "${PROJECT_BINARY_DIR}/generated/kova_version.h" @ONLY)
# The program in the build tree (src/kova) finds the same files in the same place relative
# to itself as an installed one: KovaInstall.cmake puts them there.
get_filename_component(KOVA_STAGED_DATA_DIR "${PROJECT_BINARY_DIR}/src/${KOVA_DATA_FROM_PROGRAM}"
                       ABSOLUTE)
