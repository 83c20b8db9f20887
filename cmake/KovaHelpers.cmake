# Every subsystem folder contributes its sources by glob, so adding a file needs no
# edit here. Forms (src/<subsystem>/forms) and the app are Qt and stay out of the engine.
set(KOVA_SUBSYSTEMS core tags daq control logging alarms displays platform)

function(kova_engine_sources out)
    set(files)
    foreach(sub IN LISTS KOVA_SUBSYSTEMS)
        file(GLOB_RECURSE sub_files CONFIGURE_DEPENDS
             "${PROJECT_SOURCE_DIR}/src/${sub}/*.cpp" "${PROJECT_SOURCE_DIR}/src/${sub}/*.h")
        list(FILTER sub_files EXCLUDE REGEX "/forms/")
        list(APPEND files ${sub_files})
    endforeach()
    set(${out} ${files} PARENT_SCOPE)
endfunction()

function(kova_form_sources out)
    set(files)
    foreach(sub IN LISTS KOVA_SUBSYSTEMS)
        file(GLOB_RECURSE sub_files CONFIGURE_DEPENDS
             "${PROJECT_SOURCE_DIR}/src/${sub}/forms/*.cpp" "${PROJECT_SOURCE_DIR}/src/${sub}/forms/*.h")
        list(APPEND files ${sub_files})
    endforeach()
    file(GLOB_RECURSE app_files CONFIGURE_DEPENDS
         "${PROJECT_SOURCE_DIR}/src/app/*.cpp" "${PROJECT_SOURCE_DIR}/src/app/*.h")
    list(FILTER app_files EXCLUDE REGEX "/main\\.cpp$")
    list(APPEND files ${app_files})
    set(${out} ${files} PARENT_SCOPE)
endfunction()
