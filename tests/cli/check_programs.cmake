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

# A data source the library does not know is one line on standard error and a failure, before
# any window could open (a dialog would hang here until the timeout). Qt on the offscreen
# platform wants a private runtime folder, or it says so on standard error.
set(runtime ${CMAKE_CURRENT_BINARY_DIR}/programs-runtime)
file(MAKE_DIRECTORY ${runtime})
file(CHMOD ${runtime} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
foreach(program ${programs})
    get_filename_component(name ${program} NAME)
    set(command "")
    if(name STREQUAL "orv-geodb")
        set(command groups)
    endif()
    foreach(platform unset offscreen)
        if(platform STREQUAL "unset")
            set(env --unset=QT_QPA_PLATFORM)
        else()
            set(env QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=${runtime})
        endif()
        execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY
                ${env} ${program} --data foo:bar ${command}
            RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
        string(STRIP "${err}" line)
        if(rc EQUAL 0 OR NOT rc MATCHES "^[0-9]+$" OR NOT line MATCHES "foo:bar"
                OR line MATCHES "\n" OR NOT out STREQUAL "")
            message(FATAL_ERROR
                "${name} --data foo:bar (${platform}): exit ${rc}, stderr '${err}', stdout '${out}'")
        endif()
    endforeach()
endforeach()
