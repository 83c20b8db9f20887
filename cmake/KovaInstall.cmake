# What an installed KOVA is made of besides its two programs: the help and the
# demonstration configuration (also put in the build tree, where the program built there
# finds them in the same place relative to itself), the desktop entry, icons and AppStream
# metainfo, and the man pages. The station's service files are Debian packaging
# (debian/kova-cli.*): their paths follow Debian's layout.

# ---- read-only files of the program, in the build tree and installed ----------------------
# The help names the version where it says @PROJECT_VERSION@ (and nothing else is replaced:
# control statements in its examples are full of "@").
set(help_source "${PROJECT_SOURCE_DIR}/docs/help/kova.html")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${help_source}")
file(READ "${help_source}" help_text)
string(REPLACE "@PROJECT_VERSION@" "${PROJECT_VERSION}" help_text "${help_text}")
file(WRITE "${PROJECT_BINARY_DIR}/help/kova.html" "${help_text}")
configure_file("${PROJECT_BINARY_DIR}/help/kova.html" "${KOVA_STAGED_DATA_DIR}/help/kova.html"
               COPYONLY)
configure_file("${PROJECT_SOURCE_DIR}/examples/demo.json"
               "${KOVA_STAGED_DATA_DIR}/examples/demo.json" COPYONLY)
install(FILES "${KOVA_STAGED_DATA_DIR}/help/kova.html"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/kova/help")
install(FILES "${KOVA_STAGED_DATA_DIR}/examples/demo.json"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/kova/examples")

# The demonstration as a setup file, built by kova-cli from its JSON description: the
# program's first start copies it into the new working folder as Default.Suf.
if(TARGET kova-cli)
    set(demo_setup "${KOVA_STAGED_DATA_DIR}/examples/Default.Suf")
    add_custom_command(
        OUTPUT "${demo_setup}"
        COMMAND kova-cli build "${PROJECT_SOURCE_DIR}/examples/demo.json" -o "${demo_setup}"
        DEPENDS kova-cli "${PROJECT_SOURCE_DIR}/examples/demo.json"
        COMMENT "Building the demonstration setup file"
        VERBATIM)
    add_custom_target(kova_demo_setup ALL DEPENDS "${demo_setup}")
    install(FILES "${demo_setup}" DESTINATION "${CMAKE_INSTALL_DATADIR}/kova/examples")
endif()

install(TARGETS kova-cli RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
# HTTPS of the station's web page needs this beside kova-cli's own files: kova-cli looks in
# ../lib/kova from its bin folder (cli_run_web.cpp).
if(TARGET kova_tls_compat)
    install(TARGETS kova_tls_compat LIBRARY DESTINATION lib/kova)
endif()

# ---- man pages ------------------------------------------------------------------------------
foreach(page kova kova-cli)
    configure_file("${PROJECT_SOURCE_DIR}/packaging/man/${page}.1.in"
                   "${PROJECT_BINARY_DIR}/man/${page}.1" @ONLY)
endforeach()
install(FILES "${PROJECT_BINARY_DIR}/man/kova-cli.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")

if(NOT KOVA_BUILD_UI)
    return()
endif()

install(TARGETS kova RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(FILES "${PROJECT_BINARY_DIR}/man/kova.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")

# ---- the desktop: entry, metainfo, icon --------------------------------------------------
set(desktop_dir "${PROJECT_BINARY_DIR}/desktop")
configure_file("${PROJECT_SOURCE_DIR}/packaging/desktop/kova.desktop.in"
               "${desktop_dir}/${KOVA_APP_ID}.desktop" @ONLY)
configure_file("${PROJECT_SOURCE_DIR}/packaging/desktop/kova.metainfo.xml.in"
               "${desktop_dir}/${KOVA_APP_ID}.metainfo.xml" @ONLY)
install(FILES "${desktop_dir}/${KOVA_APP_ID}.desktop"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${desktop_dir}/${KOVA_APP_ID}.metainfo.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

# One drawing, kova.svg; the bitmap sizes desktops ask for are made from it.
set(icon_svg "${PROJECT_SOURCE_DIR}/packaging/desktop/kova.svg")
install(FILES "${icon_svg}" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps"
        RENAME "${KOVA_APP_ID}.svg")
find_program(RSVG_CONVERT rsvg-convert REQUIRED)  # Debian package librsvg2-bin
set(icon_pngs)
foreach(size 16 22 24 32 48 64 128 256)
    set(png "${desktop_dir}/icons/${size}x${size}/${KOVA_APP_ID}.png")
    add_custom_command(
        OUTPUT "${png}"
        COMMAND ${CMAKE_COMMAND} -E make_directory "${desktop_dir}/icons/${size}x${size}"
        COMMAND "${RSVG_CONVERT}" -w ${size} -h ${size} -o "${png}" "${icon_svg}"
        DEPENDS "${icon_svg}"
        VERBATIM)
    list(APPEND icon_pngs "${png}")
    install(FILES "${png}"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps")
endforeach()
add_custom_target(kova_icons ALL DEPENDS ${icon_pngs})
