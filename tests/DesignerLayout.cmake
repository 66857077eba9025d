cmake_minimum_required(VERSION 3.25)
# Fails when a form is squeezed onto long lines: every .ui keeps one element a line, as Designer
# writes it, so that a change to a form reads as a diff of the elements it touched.
#   cmake -DSOURCE_DIR=<the project> -P tests/DesignerLayout.cmake
file(GLOB_RECURSE forms "${SOURCE_DIR}/src/*.ui")
list(LENGTH forms count)
if(count EQUAL 0)
    message(FATAL_ERROR "no forms found under ${SOURCE_DIR}/src")
endif()
set(squeezed "")
foreach(form IN LISTS forms)
    file(STRINGS "${form}" lines)
    foreach(line IN LISTS lines)
        string(LENGTH "${line}" length)
        if(length GREATER 200)
            list(APPEND squeezed "${form}")
            break()
        endif()
    endforeach()
endforeach()
include(${CMAKE_CURRENT_LIST_DIR}/SourceCheck.cmake)
end_source_check("${squeezed}" "forms with lines over 200 characters (open and save them in Designer)"
    "${count} forms, one element a line")
