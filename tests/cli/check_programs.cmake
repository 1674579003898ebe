# Every program answers --help and --version without a window system: no DISPLAY, no
# WAYLAND_DISPLAY, no QT_QPA_PLATFORM. An unknown option fails with a message. Called by ctest
# with -DPROGRAMS=<program>|<program>|...
string(REPLACE "|" ";" programs "${PROGRAMS}")
foreach(program ${programs})
    get_filename_component(name ${program} NAME)
    foreach(option --help --version)
        execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY
                --unset=QT_QPA_PLATFORM ${program} ${option}
            RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
        if(NOT rc EQUAL 0 OR out STREQUAL "")
            message(FATAL_ERROR "${name} ${option}: exit ${rc}\n${out}\n${err}")
        endif()
        if(option STREQUAL "--version" AND NOT out MATCHES "${name} [0-9]")
            message(FATAL_ERROR "${name} --version: '${out}'")
        endif()
    endforeach()
    execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY
            --unset=QT_QPA_PLATFORM ${program} --no-such-option
        RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
    if(rc EQUAL 0 OR err STREQUAL "")
        message(FATAL_ERROR "${name} --no-such-option: exit ${rc}, stderr '${err}'")
    endif()
endforeach()
