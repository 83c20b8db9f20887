# The files that make KOVA installable, checked as the tools that read them do: the man
# pages against the programs' own --help, the desktop entry and metainfo, the station's
# unit, and debian/changelog against the project's version.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

if(TARGET kova)
    set(kova_for_man $<TARGET_FILE:kova>)
else()
    set(kova_for_man "-")
endif()
add_test(NAME ManPagesDescribeEveryOption
         COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/tools/man_pages_cover_options.py
                 ${kova_for_man} $<TARGET_FILE:kova-cli> ${PROJECT_BINARY_DIR}/man)

add_test(NAME PackageVersionMatchesTheProject
         COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/tools/package_version_agrees.py
                 ${PROJECT_SOURCE_DIR}/debian/changelog ${PROJECT_VERSION} ${KOVA_RELEASE_DATE})

add_test(NAME StationUnitVerifies
         COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/tools/verify_station_unit.sh
                 ${PROJECT_SOURCE_DIR}/debian/kova-cli.kova-station@.service
                 $<TARGET_FILE:kova-cli>)

if(TARGET kova)
    add_test(NAME DesktopEntryAndMetainfoValidate
             COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/tools/validate_desktop_files.sh
                     ${PROJECT_BINARY_DIR}/desktop/${KOVA_APP_ID}.desktop
                     ${PROJECT_BINARY_DIR}/desktop/${KOVA_APP_ID}.metainfo.xml)
endif()
